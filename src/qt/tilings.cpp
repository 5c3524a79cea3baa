#include "qt/tilings.h"

#include <algorithm>

namespace marlune::qt {

namespace {

// Splits `length` into `count` parts that differ by at most one pixel, the larger ones first.
std::vector<std::pair<int, int>> Split(int start, int length, int count)
{
    std::vector<std::pair<int, int>> parts;
    if (count <= 0)
        return parts;
    const int base = length / count;
    const int extra = length % count;
    int at = start;
    for (int i = 0; i < count; ++i) {
        const int size = base + (i < extra ? 1 : 0);
        parts.emplace_back(at, size);
        at += size;
    }
    return parts;
}

} // namespace

std::vector<QRect> TileHorizontally(const QRect& area, int count)
{
    std::vector<QRect> tiles;
    for (const auto& [y, height] : Split(area.top(), area.height(), count))
        tiles.emplace_back(area.left(), y, area.width(), height);
    return tiles;
}

std::vector<QRect> TileVertically(const QRect& area, int count)
{
    std::vector<QRect> tiles;
    for (const auto& [x, width] : Split(area.left(), area.width(), count))
        tiles.emplace_back(x, area.top(), width, area.height());
    return tiles;
}

std::vector<QPoint> IconPositions(const QRect& area, const QSize& iconSize, int count)
{
    std::vector<QPoint> positions;
    if (iconSize.width() <= 0 || iconSize.height() <= 0)
        return positions;
    const int perRow = std::max(1, area.width() / iconSize.width());
    for (int i = 0; i < count; ++i) {
        const int row = i / perRow;
        const int column = i % perRow;
        positions.emplace_back(area.left() + column * iconSize.width(),
                               area.bottom() + 1 - (row + 1) * iconSize.height());
    }
    return positions;
}

} // namespace marlune::qt
