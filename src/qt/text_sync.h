#pragma once

#include <QFont>
#include <QString>

#include <string>

#include "forms/control.h"

class QWidget;

namespace marlune::qt {

// A text box shows in a QLineEdit, or in a QPlainTextEdit when it is multi-line. Its text,
// caret and selection travel between the model and that widget.

// A caret (start == end) or selection, from start to end.
struct TextSelection {
    int start;
    int end;
};

QString WidgetText(QWidget& widget);
// The widget's caret and selection, in the widget's positions.
TextSelection WidgetSelection(QWidget& widget);
// The box's positions of the characters the widget has selected.
TextSelection ModelSelection(const forms::TextBox& box, TextSelection shown);
void Select(forms::TextBox& box, TextSelection selection);

// The widget property that carries a text box's marked words, as a list of texts, for a widget
// that marks them.
inline constexpr const char* kMarkedWords = "markedWords";

// Shows the box's text, caret, selection, lock and marked words in its widget, touching only what
// differs.
void ShowTextBox(const forms::TextBox& box, QWidget& widget);

// The font a text box names; a name of the Courier family keeps a fixed pitch where the
// desktop has no such font.
QFont NamedFont(QFont font, const std::string& name);

} // namespace marlune::qt
