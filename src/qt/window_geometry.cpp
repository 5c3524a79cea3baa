#include "qt/window_geometry.h"

#include <QEvent>
#include <QWidget>

namespace marlune::qt {

bool MovesWindow(const QEvent& event)
{
    return event.type() == QEvent::Move || event.type() == QEvent::Resize || event.type() == QEvent::WindowStateChange;
}

void ReportGeometry(const QWidget& window, forms::Form& form)
{
    const QRect place = window.isWindow() ? window.frameGeometry() : window.geometry();
    form.left = place.x();
    form.top = place.y();
    form.width = place.width();
    form.height = place.height();
    form.windowState = window.isMinimized()   ? forms::WindowState::Minimized
                       : window.isMaximized() ? forms::WindowState::Maximized
                                              : forms::WindowState::Normal;
}

} // namespace marlune::qt
