#include "qt/form_window.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace marlune::qt {

FormWindow::FormWindow(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {}

void FormWindow::closeEvent(QCloseEvent* event)
{
    if (!closeRequested) {
        event->accept();
        return;
    }
    // The form decides; when it unloads, the platform takes the window away.
    event->ignore();
    closeRequested();
}

void FormWindow::keyPressEvent(QKeyEvent* event)
{
    if ((event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && unhandledKey && unhandledKey(event->key())) {
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace marlune::qt
