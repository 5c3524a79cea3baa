#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace marlune::qt {

// The frame's own tilings (Qt offers only a grid). `count` windows share `area`; the pixels
// that do not divide evenly go to the first windows, so that the tiles fill the area exactly.

// Stacked top to bottom, each the full width.
std::vector<QRect> TileHorizontally(const QRect& area, int count);
// Side by side, each the full height.
std::vector<QRect> TileVertically(const QRect& area, int count);
// Minimised windows lined up along the bottom, left to right, a new row above when a row is full.
std::vector<QPoint> IconPositions(const QRect& area, const QSize& iconSize, int count);

} // namespace marlune::qt
