// Draws the program's icon once, from one list of shapes, as the scalable SVG and as PNG pictures
// of the sizes the desktop's icon theme asks for: marlune_icon OUT_DIR SIZE...
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <QSaveFile>
#include <QString>
#include <QTextStream>

#include <cstdio>
#include <vector>

namespace {

// The picture is drawn on a square of 256 units: a dark plate, four axes leaving a hub, and the
// hub's ring, so that it reads as a motion controller also at 48 pixels.
constexpr double kUnits = 256;

struct Shape {
    enum class Kind { Plate, Circle, Polygon } kind;
    QColor fill;
    std::vector<QPointF> points; // Plate: corner and size; Circle: centre and (radius, 0)
};

std::vector<Shape> IconShapes()
{
    const QColor plate(0x1d, 0x4f, 0x91);
    const QColor axis(0xf2, 0xf5, 0xfa);
    const QColor hub(0xf5, 0xa6, 0x23);
    std::vector<Shape> shapes{{Shape::Kind::Plate, plate, {{8, 8}, {240, 240}}}};
    // One arrow per axis, pointing right, down, left and up from the hub.
    const std::vector<QPointF> arrow{{128, 118}, {196, 118}, {196, 98}, {232, 128}, {196, 158}, {196, 138}, {128, 138}};
    for (int quarter = 0; quarter < 4; ++quarter) {
        std::vector<QPointF> turned;
        for (const QPointF& p : arrow) {
            const QPointF d = p - QPointF(128, 128);
            const QPointF r = quarter == 0 ? d : quarter == 1 ? QPointF(-d.y(), d.x())
                                         : quarter == 2 ? -d
                                                        : QPointF(d.y(), -d.x());
            turned.push_back(r + QPointF(128, 128));
        }
        shapes.push_back({Shape::Kind::Polygon, axis, turned});
    }
    shapes.push_back({Shape::Kind::Circle, axis, {{128, 128}, {46, 0}}});
    shapes.push_back({Shape::Kind::Circle, hub, {{128, 128}, {34, 0}}});
    shapes.push_back({Shape::Kind::Circle, plate, {{128, 128}, {14, 0}}});
    return shapes;
}

QString Svg(const std::vector<Shape>& shapes)
{
    QString svg;
    QTextStream out(&svg);
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kUnits << "\" height=\"" << kUnits
        << "\" viewBox=\"0 0 " << kUnits << ' ' << kUnits << "\">\n";
    for (const Shape& s : shapes) {
        const QString fill = s.fill.name();
        switch (s.kind) {
        case Shape::Kind::Plate:
            out << "  <rect x=\"" << s.points[0].x() << "\" y=\"" << s.points[0].y() << "\" width=\"" << s.points[1].x()
                << "\" height=\"" << s.points[1].y() << "\" rx=\"40\" fill=\"" << fill << "\"/>\n";
            break;
        case Shape::Kind::Circle:
            out << "  <circle cx=\"" << s.points[0].x() << "\" cy=\"" << s.points[0].y() << "\" r=\"" << s.points[1].x()
                << "\" fill=\"" << fill << "\"/>\n";
            break;
        case Shape::Kind::Polygon:
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

QImage Png(const std::vector<Shape>& shapes, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kUnits, size / kUnits);
    painter.setPen(Qt::NoPen);
    for (const Shape& s : shapes) {
        painter.setBrush(s.fill);
        switch (s.kind) {
        case Shape::Kind::Plate: painter.drawRoundedRect(QRectF(s.points[0], QSizeF(s.points[1].x(), s.points[1].y())), 40, 40); break;
        case Shape::Kind::Circle: painter.drawEllipse(s.points[0], s.points[1].x(), s.points[1].x()); break;
        case Shape::Kind::Polygon: painter.drawPolygon(QPolygonF(QList<QPointF>(s.points.begin(), s.points.end()))); break;
        }
    }
    return image;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: marlune_icon OUT_DIR SIZE...\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    const std::vector<Shape> shapes = IconShapes();
    QSaveFile svg(dir + "/marlune-desk.svg");
    if (!svg.open(QIODevice::WriteOnly) || svg.write(Svg(shapes).toUtf8()) < 0 || !svg.commit()) {
        std::fprintf(stderr, "marlune_icon: cannot write %s\n", qPrintable(svg.fileName()));
        return 1;
    }
    for (int i = 2; i < argc; ++i) {
        const int size = QString::fromLatin1(argv[i]).toInt();
        const QString name = dir + QStringLiteral("/marlune-desk-%1.png").arg(size);
        if (size <= 0 || !Png(shapes, size).save(name)) {
            std::fprintf(stderr, "marlune_icon: cannot write %s\n", qPrintable(name));
            return 1;
        }
    }
    return 0;
}
