#include "qt/key_translation.h"

#include <QAction>
#include <QKeyEvent>
#include <QWidget>

#include "forms/control.h"

namespace marlune::qt {

namespace {

bool WithCtrlOrAlt(const QKeyEvent& event)
{
    return (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0;
}

} // namespace

int ModelKeyCode(const QKeyEvent& event, bool tabIsText)
{
    if (WithCtrlOrAlt(event))
        return 0;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return forms::kKeyEnter;
    case Qt::Key_Escape: return forms::kKeyEscape;
    case Qt::Key_Backspace: return forms::kKeyBackspace;
    case Qt::Key_Tab: return tabIsText ? forms::kKeyTab : 0;
    default: return 0;
    }
}

bool Typed(const QKeyEvent& event)
{
    if (WithCtrlOrAlt(event) || event.text().isEmpty())
        return false;
    for (const QChar c : event.text()) {
        if (!c.isPrint())
            return false;
    }
    return true;
}

bool WindowShortcut(const QWidget& widget, const QKeyEvent& event)
{
    const QKeySequence pressed(event.keyCombination());
    for (const QAction* action : widget.window()->findChildren<QAction*>()) {
        if (!action->shortcut().isEmpty() && action->shortcut().matches(pressed) == QKeySequence::ExactMatch)
            return true;
    }
    return false;
}

} // namespace marlune::qt
