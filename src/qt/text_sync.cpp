#include "qt/text_sync.h"

#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>

#include "qt/shown_text.h"

namespace marlune::qt {

namespace {

void ShowInLine(const forms::TextBox& box, QLineEdit& line, const QString& shown, TextSelection wanted)
{
    if (line.isReadOnly() != box.locked)
        line.setReadOnly(box.locked);
    if (line.text() != shown)
        line.setText(shown);
    const TextSelection now = WidgetSelection(line);
    if (now.start == wanted.start && now.end == wanted.end)
        return;
    if (wanted.end > wanted.start)
        line.setSelection(wanted.start, wanted.end - wanted.start);
    else
        line.setCursorPosition(wanted.start);
}

void ShowInPlain(const forms::TextBox& box, QPlainTextEdit& text, const QString& shown, TextSelection wanted)
{
    if (text.isReadOnly() != box.locked) {
        text.setReadOnly(box.locked);
        // A locked box still lets the operator select and copy with the keyboard.
        if (box.locked)
            text.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    const QString current = text.toPlainText();
    if (current != shown) {
        // Only the stretch that differs is replaced: a key typed into a long program, or a log
        // that grows at its end, lays out and colours that stretch alone.
        const qsizetype most = std::min(current.size(), shown.size());
        qsizetype prefix = 0;
        while (prefix < most && current[prefix] == shown[prefix])
            ++prefix;
        qsizetype suffix = 0;
        while (suffix < most - prefix && current[current.size() - 1 - suffix] == shown[shown.size() - 1 - suffix])
            ++suffix;
        if (prefix == 0 && suffix == 0) {
            text.setPlainText(shown);
        } else {
            QTextCursor cursor(text.document());
            cursor.setPosition(static_cast<int>(prefix));
            cursor.setPosition(static_cast<int>(current.size() - suffix), QTextCursor::KeepAnchor);
            cursor.insertText(shown.mid(prefix, shown.size() - prefix - suffix));
        }
    }
    const TextSelection now = WidgetSelection(text);
    if (now.start == wanted.start && now.end == wanted.end)
        return;
    QTextCursor cursor = text.textCursor();
    cursor.setPosition(wanted.start);
    cursor.setPosition(wanted.end, QTextCursor::KeepAnchor);
    text.setTextCursor(cursor);
    text.ensureCursorVisible();
}

} // namespace

QString WidgetText(QWidget& widget)
{
    if (auto* line = qobject_cast<QLineEdit*>(&widget))
        return line->text();
    return static_cast<QPlainTextEdit&>(widget).toPlainText();
}

TextSelection WidgetSelection(QWidget& widget)
{
    if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
        if (line->hasSelectedText())
            return {line->selectionStart(), line->selectionEnd()};
        return {line->cursorPosition(), line->cursorPosition()};
    }
    const QTextCursor cursor = static_cast<QPlainTextEdit&>(widget).textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd()};
}

TextSelection ModelSelection(const forms::TextBox& box, TextSelection shown)
{
    return {ModelPosition(box.text(), shown.start, box.multiLine), ModelPosition(box.text(), shown.end, box.multiLine)};
}

void Select(forms::TextBox& box, TextSelection selection)
{
    box.setSelStart(selection.start);
    box.setSelLength(selection.end - selection.start);
}

void ShowTextBox(const forms::TextBox& box, QWidget& widget)
{
    const QString shown = ShownText(box.text(), box.multiLine);
    const TextSelection wanted{ShownPosition(box.text(), box.selStart(), box.multiLine),
                               ShownPosition(box.text(), box.selStart() + box.selLength(), box.multiLine)};
    if (auto* line = qobject_cast<QLineEdit*>(&widget))
        ShowInLine(box, *line, shown, wanted);
    else
        ShowInPlain(box, static_cast<QPlainTextEdit&>(widget), shown, wanted);
    QStringList words;
    for (const std::string& word : box.markedWords())
        words << ShownText(word);
    if (widget.property(kMarkedWords).toStringList() != words)
        widget.setProperty(kMarkedWords, words);
}

QFont NamedFont(QFont font, const std::string& name)
{
    font.setFamily(ShownText(name));
    if (name.find("Courier") != std::string::npos || name.find("Mono") != std::string::npos)
        font.setStyleHint(QFont::TypeWriter);
    return font;
}

} // namespace marlune::qt
