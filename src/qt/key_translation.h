#pragma once

class QKeyEvent;
class QWidget;

namespace marlune::qt {

// The model's code of a key that a text box hands to the model whole (Enter, Escape,
// Backspace, and Tab in a box that takes it as text), or 0: for other keys, and for keys with
// Ctrl or Alt, which are the box's own editing keys (copy, select all, undo). Elsewhere Tab
// moves the focus.
int ModelKeyCode(const QKeyEvent& event, bool tabIsText);

// A key whose text the model types: printable characters without Ctrl or Alt.
bool Typed(const QKeyEvent& event);

// Is this key a shortcut of the window's menus? Then it goes to the menu, not the text box.
bool WindowShortcut(const QWidget& widget, const QKeyEvent& event);

} // namespace marlune::qt
