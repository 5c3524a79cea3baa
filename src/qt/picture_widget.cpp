#include "qt/picture_widget.h"

#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace marlune::qt {

namespace {

struct Look {
    bool lamp; // a round lamp, else a square
    QColor fill;
    QColor rim;
};

// The image vocabulary of the forms.
bool LookOf(const QString& picture, Look& look)
{
    const QColor grey(0xa0, 0xa0, 0xa0);
    if (picture == QLatin1String("SwitchOn"))
        look = {false, QColor(0xff, 0x80, 0xc0), QColor(0x80, 0x40, 0x60)};
    else if (picture == QLatin1String("SwitchOff"))
        look = {false, grey, grey.darker(150)};
    else if (picture == QLatin1String("InputOn"))
        look = {true, QColor(0x20, 0xd0, 0x20), QColor(0x10, 0x70, 0x10)};
    else if (picture == QLatin1String("DIO_IN_OFF"))
        look = {true, grey, QColor(0x20, 0xb0, 0x20)};
    else if (picture == QLatin1String("OutputOn"))
        look = {true, QColor(0xf0, 0x20, 0x20), QColor(0x80, 0x10, 0x10)};
    else if (picture == QLatin1String("DIO_OUT_OFF"))
        look = {true, grey, QColor(0xd0, 0x20, 0x20)};
    else if (picture == QLatin1String("LedOff"))
        look = {true, grey, grey.darker(150)};
    else
        return false;
    return true;
}

int FormsButton(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton: return 1;
    case Qt::RightButton: return 2;
    case Qt::MiddleButton: return 4;
    default: return 0;
    }
}

} // namespace

PictureWidget::PictureWidget(QWidget* parent) : QWidget(parent) {}

void PictureWidget::setPicture(const QString& picture)
{
    if (picture_ == picture)
        return;
    picture_ = picture;
    update();
}

void PictureWidget::paintEvent(QPaintEvent*)
{
    Look look{};
    if (!LookOf(picture_, look))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // A disabled picture is faded, as a disabled box greys its text: it shows no live state.
    if (!isEnabled())
        painter.setOpacity(0.35);
    const int side = std::min(width(), height()) - 2;
    const QRectF box((width() - side) / 2.0, (height() - side) / 2.0, side, side);
    painter.setPen(QPen(look.rim, std::max(1.5, side / 6.0)));
    painter.setBrush(look.fill);
    if (look.lamp) {
        painter.drawEllipse(box.adjusted(1, 1, -1, -1));
        // A highlight, so that a lamp reads as a lamp and not as a dot.
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 110));
        painter.drawEllipse(QRectF(box.left() + side * 0.25, box.top() + side * 0.2, side * 0.3, side * 0.25));
    } else {
        painter.drawRect(box.adjusted(1, 1, -1, -1));
    }
}

void PictureWidget::mousePressEvent(QMouseEvent* event)
{
    if (const int button = FormsButton(event->button()))
        emit mouseDown(button);
}

void PictureWidget::mouseReleaseEvent(QMouseEvent* event)
{
    // The release that ends a double click is no second click.
    const bool afterDouble = std::exchange(afterDoubleClick_, false);
    if (event->button() == Qt::LeftButton && !afterDouble && rect().contains(event->position().toPoint()))
        emit clicked();
}

void PictureWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        afterDoubleClick_ = true;
        emit doubleClicked();
    }
}

} // namespace marlune::qt
