#include "qt/toolbar_icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>
#include <functional>
#include <map>
#include <vector>

namespace marlune::qt {

namespace {

constexpr int kSide = 32;
const QColor kInk(0x30, 0x30, 0x38);
const QColor kPaper(0xfa, 0xfa, 0xf5);
const QColor kAccent(0x2a, 0x6c, 0xc8);

void Page(QPainter& p, QRectF r)
{
    QPainterPath path;
    path.moveTo(r.topLeft());
    path.lineTo(r.right() - 6, r.top());
    path.lineTo(r.right(), r.top() + 6);
    path.lineTo(r.bottomRight());
    path.lineTo(r.bottomLeft());
    path.closeSubpath();
    p.setBrush(kPaper);
    p.drawPath(path);
}

void Arrow(QPainter& p, QPointF tip, qreal size, bool up)
{
    const qreal dir = up ? 1 : -1;
    QPolygonF head({tip, tip + QPointF(-size, dir * size), tip + QPointF(size, dir * size)});
    p.setBrush(kAccent);
    p.drawPolygon(head);
    p.drawRect(QRectF(tip.x() - size / 3, tip.y() + dir * size, 2 * size / 3, dir * size));
}

using Drawing = std::function<void(QPainter&)>;

const std::map<QString, Drawing>& Icons()
{
    // clang-format off
    static const std::map<QString, Drawing> icons = {
        {"Upload", [](QPainter& p) { Page(p, {6, 10, 20, 19}); Arrow(p, {16, 2}, 7, true); }},
        {"New", [](QPainter& p) { Page(p, {7, 3, 18, 26}); }},
        {"Open", [](QPainter& p) {
             p.setBrush(QColor(0xe8, 0xc0, 0x60));
             p.drawRect(QRectF(3, 8, 26, 19));
             p.setBrush(QColor(0xf6, 0xd8, 0x80));
             p.drawPolygon(QPolygonF({{3, 27}, {8, 14}, {31, 14}, {29, 27}}));
         }},
        {"Save", [](QPainter& p) {
             p.setBrush(kAccent);
             p.drawRect(QRectF(4, 4, 24, 24));
             p.setBrush(kPaper);
             p.drawRect(QRectF(9, 4, 14, 9));
             p.drawRect(QRectF(8, 18, 16, 10));
         }},
        {"Print", [](QPainter& p) {
             Page(p, {9, 3, 14, 10});
             p.setBrush(QColor(0x90, 0x90, 0x98));
             p.drawRoundedRect(QRectF(3, 12, 26, 12), 2, 2);
             Page(p, {9, 20, 14, 9});
         }},
        {"Cut", [](QPainter& p) {
             p.drawLine(QPointF(9, 3), QPointF(21, 21));
             p.drawLine(QPointF(23, 3), QPointF(11, 21));
             p.setBrush(Qt::NoBrush);
             p.drawEllipse(QRectF(4, 20, 8, 8));
             p.drawEllipse(QRectF(20, 20, 8, 8));
         }},
        {"Copy", [](QPainter& p) { Page(p, {4, 3, 16, 20}); Page(p, {12, 9, 16, 20}); }},
        {"Paste", [](QPainter& p) {
             p.setBrush(QColor(0xc8, 0x98, 0x58));
             p.drawRoundedRect(QRectF(4, 5, 20, 24), 2, 2);
             p.setBrush(QColor(0x90, 0x90, 0x98));
             p.drawRect(QRectF(10, 2, 8, 6));
             Page(p, {13, 12, 16, 17});
         }},
        {"control", [](QPainter& p) {
             p.setBrush(kPaper);
             p.drawEllipse(QRectF(3, 3, 26, 26));
             p.setPen(QPen(QColor(0xd0, 0x30, 0x30), 2.5));
             p.drawLine(QPointF(16, 16), QPointF(24, 9));
         }},
        {"terminal", [](QPainter& p) {
             p.setBrush(kInk);
             p.drawRoundedRect(QRectF(2, 5, 28, 22), 2, 2);
             p.setPen(QPen(QColor(0x60, 0xe0, 0x60), 2));
             p.drawPolyline(QPolygonF({{7, 11}, {12, 15}, {7, 19}}));
             p.drawLine(QPointF(14, 20), QPointF(22, 20));
         }},
        {"setup", [](QPainter& p) {
             p.setBrush(QColor(0x90, 0x90, 0x98));
             for (int i = 0; i < 8; ++i) {
                 p.save();
                 p.translate(16, 16);
                 p.rotate(i * 45);
                 p.drawRect(QRectF(-2.5, -14, 5, 6));
                 p.restore();
             }
             p.drawEllipse(QRectF(6, 6, 20, 20));
             p.setBrush(kPaper);
             p.drawEllipse(QRectF(12, 12, 8, 8));
         }},
        {"setupjoy", [](QPainter& p) {
             p.setBrush(QColor(0x90, 0x90, 0x98));
             p.drawRoundedRect(QRectF(4, 22, 24, 7), 2, 2);
             p.setPen(QPen(kInk, 3));
             p.drawLine(QPointF(16, 22), QPointF(16, 10));
             p.setPen(kInk);
             p.setBrush(QColor(0xd0, 0x30, 0x30));
             p.drawEllipse(QRectF(11, 3, 10, 10));
         }},
        {"setupenc", [](QPainter& p) {
             p.setBrush(kPaper);
             p.drawEllipse(QRectF(3, 3, 26, 26));
             p.setBrush(kInk);
             for (int i = 0; i < 12; ++i) {
                 p.save();
                 p.translate(16, 16);
                 p.rotate(i * 30);
                 p.drawRect(QRectF(-1, -12, 2, 5));
                 p.restore();
             }
             p.drawEllipse(QRectF(13, 13, 6, 6));
         }},
        {"Tile", [](QPainter& p) {
             p.setBrush(kPaper);
             for (int i = 0; i < 3; ++i)
                 p.drawRect(QRectF(3 + i * 9, 5, 8, 22));
             p.setBrush(kAccent);
             for (int i = 0; i < 3; ++i)
                 p.drawRect(QRectF(3 + i * 9, 5, 8, 4));
         }},
        {"ProgRun", [](QPainter& p) {
             p.setBrush(QColor(0x3a, 0x9a, 0x4a));
             p.drawPolygon(QPolygonF({{9, 5}, {27, 16}, {9, 27}}));
         }},
        {"ProgramStop", [](QPainter& p) {
             p.setBrush(kAccent);
             p.drawRect(QRectF(7, 7, 18, 18));
         }},
        {"Abort", [](QPainter& p) {
             p.setBrush(QColor(0xc8, 0x32, 0x2a));
             QPolygonF octagon;
             for (int i = 0; i < 8; ++i)
                 octagon << QPointF(16, 16) + QLineF::fromPolar(13, 22.5 + i * 45).p2();
             p.drawPolygon(octagon);
             p.setPen(QPen(Qt::white, 3));
             p.drawLine(QLineF(11, 16, 21, 16));
         }},
        {"Help", [](QPainter& p) {
             p.setBrush(kAccent);
             p.drawEllipse(QRectF(3, 3, 26, 26));
             // A drawn question mark: a letter would load a bold font at start for one picture.
             QPainterPath hook;
             hook.moveTo(11.5, 12.5);
             hook.arcTo(QRectF(11.5, 8, 9, 9), 180, -250);
             hook.quadTo(16, 16.5, 16, 19.5);
             p.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap));
             p.setBrush(Qt::NoBrush);
             p.drawPath(hook);
             p.setPen(Qt::NoPen);
             p.setBrush(Qt::white);
             p.drawEllipse(QPointF(16, 24), 1.8, 1.8);
         }},
    };
    // clang-format on
    return icons;
}

QIcon Drawn(const Drawing& drawing)
{
    QIcon icon;
    // Drawn once more at the screen's pixel density where it is higher, so that the picture stays
    // sharp there rather than being blown up; a plain screen pays for the plain picture only.
    const int dense = static_cast<int>(std::ceil(qGuiApp ? qGuiApp->devicePixelRatio() : 1.0));
    for (const int ratio : dense > 1 ? std::vector<int>{1, dense} : std::vector<int>{1}) {
        QPixmap pixmap(kSide * ratio, kSide * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(kInk, 1.5));
        drawing(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

// An image nobody drew: its initial on a plain tile, so the button can still be told apart.
QIcon Initial(const QString& image)
{
    return Drawn([image](QPainter& p) {
        p.setBrush(kPaper);
        p.drawRoundedRect(QRectF(3, 3, 26, 26), 4, 4);
        p.drawText(QRectF(3, 3, 26, 26), Qt::AlignCenter, image.left(1).toUpper());
    });
}

} // namespace

QIcon ToolbarExtensionIcon(Qt::Orientation orientation)
{
    // Two chevrons pointing where the hidden buttons are.
    return Drawn([orientation](QPainter& p) {
        p.setPen(QPen(kInk, 2.5));
        for (const qreal at : {10.0, 18.0}) {
            const QPolygonF chevron({{at, 9}, {at + 6, 16}, {at, 23}});
            p.drawPolyline(orientation == Qt::Horizontal ? chevron : QTransform(0, 1, 1, 0, 0, 0).map(chevron));
        }
    });
}

QIcon ToolbarIcon(const QString& image)
{
    const auto it = Icons().find(image);
    if (it == Icons().end())
        return Initial(image);
    return Drawn(it->second);
}

} // namespace marlune::qt
