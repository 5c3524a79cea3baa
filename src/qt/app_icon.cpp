#include "qt/app_icon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QPolygonF>
#include <QTextStream>

#include <cmath>

namespace marlune::qt {

std::vector<AppIconShape> AppIconShapes()
{
    using Kind = AppIconShape::Kind;
    const QColor plate(0x1d, 0x4f, 0x91);
    const QColor axis(0xf2, 0xf5, 0xfa);
    const QColor hub(0xf5, 0xa6, 0x23);
    std::vector<AppIconShape> shapes{{Kind::Plate, plate, {{8, 8}, {240, 240}}}};
    // One arrow per axis, pointing right, down, left and up from the hub.
    const std::vector<QPointF> arrow{{128, 118}, {196, 118}, {196, 98}, {232, 128}, {196, 158}, {196, 138}, {128, 138}};
    for (int quarter = 0; quarter < 4; ++quarter) {
        std::vector<QPointF> turned;
        for (const QPointF& p : arrow) {
            const QPointF d = p - QPointF(128, 128);
            const QPointF r = quarter == 0   ? d
                              : quarter == 1 ? QPointF(-d.y(), d.x())
                              : quarter == 2 ? -d
                                             : QPointF(d.y(), -d.x());
            turned.push_back(r + QPointF(128, 128));
        }
        shapes.push_back({Kind::Polygon, axis, turned});
    }
    shapes.push_back({Kind::Circle, axis, {{128, 128}, {46, 0}}});
    shapes.push_back({Kind::Circle, hub, {{128, 128}, {34, 0}}});
    shapes.push_back({Kind::Circle, plate, {{128, 128}, {14, 0}}});
    return shapes;
}

QString AppIconSvg()
{
    QString svg;
    QTextStream out(&svg);
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kAppIconUnits << "\" height=\"" << kAppIconUnits
        << "\" viewBox=\"0 0 " << kAppIconUnits << ' ' << kAppIconUnits << "\">\n";
    for (const AppIconShape& s : AppIconShapes()) {
        const QString fill = s.fill.name();
        switch (s.kind) {
        case AppIconShape::Kind::Plate:
            out << "  <rect x=\"" << s.points[0].x() << "\" y=\"" << s.points[0].y() << "\" width=\"" << s.points[1].x()
                << "\" height=\"" << s.points[1].y() << "\" rx=\"40\" fill=\"" << fill << "\"/>\n";
            break;
        case AppIconShape::Kind::Circle:
            out << "  <circle cx=\"" << s.points[0].x() << "\" cy=\"" << s.points[0].y() << "\" r=\"" << s.points[1].x()
                << "\" fill=\"" << fill << "\"/>\n";
            break;
        case AppIconShape::Kind::Polygon:
            out << "  <polygon fill=\"" << fill << "\" points=\"";
            for (const QPointF& p : s.points)
                out << p.x() << ',' << p.y() << ' ';
            out << "\"/>\n";
            break;
        }
    }
    out << "</svg>\n";
    return svg;
}

QImage AppIconImage(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kAppIconUnits, size / kAppIconUnits);
    painter.setPen(Qt::NoPen);
    for (const AppIconShape& s : AppIconShapes()) {
        painter.setBrush(s.fill);
        switch (s.kind) {
        case AppIconShape::Kind::Plate:
            painter.drawRoundedRect(QRectF(s.points[0], QSizeF(s.points[1].x(), s.points[1].y())), 40, 40);
            break;
        case AppIconShape::Kind::Circle: painter.drawEllipse(s.points[0], s.points[1].x(), s.points[1].x()); break;
        case AppIconShape::Kind::Polygon:
            painter.drawPolygon(QPolygonF(QList<QPointF>(s.points.begin(), s.points.end())));
            break;
        }
    }
    return image;
}

QIcon AppIcon()
{
    // One picture at the size window decorations and task bars use, sharp on a dense screen; a
    // theme look-up would cost more at start than the whole frame.
    constexpr int kSide = 48;
    const qreal ratio = std::ceil(qGuiApp ? qGuiApp->devicePixelRatio() : 1.0);
    QPixmap pixmap = QPixmap::fromImage(AppIconImage(static_cast<int>(kSide * ratio)));
    pixmap.setDevicePixelRatio(ratio);
    return QIcon(pixmap);
}

} // namespace marlune::qt
