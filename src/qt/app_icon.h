#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPointF>
#include <QString>

#include <vector>

namespace marlune::qt {

// The program's icon, drawn from one list of shapes on a square of kAppIconUnits: a dark plate,
// four axes leaving a hub, and the hub's ring, so that it reads as a motion controller also at
// 48 pixels. The package ships it as SVG and PNG; the running program draws it for its windows.
inline constexpr double kAppIconUnits = 256;

struct AppIconShape {
    enum class Kind { Plate, Circle, Polygon } kind;
    QColor fill;
    std::vector<QPointF> points; // Plate: corner and size; Circle: centre and (radius, 0)
};

std::vector<AppIconShape> AppIconShapes();
QString AppIconSvg();
QImage AppIconImage(int size);
// The windows' icon, drawn at the screen's pixel density.
QIcon AppIcon();

} // namespace marlune::qt
