#pragma once

#include <QPlainTextEdit>

namespace marlune::qt {

// The editor of a program's text: a fixed-pitch font, line numbers in a left margin, the caret's
// line on a light background, the controller language highlighted, Find (Ctrl+F, F3 again) and
// Go to Line (Ctrl+G). It stays a QPlainTextEdit, so that the binder binds it as any multi-line
// text box; the names it marks come as the binder's "markedWords" property.
class ProgramHighlighter;

class ProgramEditor final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ProgramEditor(QWidget* parent = nullptr);

    // Selects the next `term` after the caret, going on from the top; false when there is none.
    bool findNext(const QString& term);
    // Puts the caret at the start of `line` (from 1; beyond the last, the last).
    void goToLine(int line);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    class Margin;

    // Room for every digit of the last line's number.
    int marginWidth() const;
    void placeMargin();
    void paintMargin(const QPaintEvent& event);
    void scrollMargin(const QRect& rect, int dy);
    void markCurrentLine();
    void askFind();
    void findAgain();
    void askLine();

    Margin* margin_;
    ProgramHighlighter* highlighter_;
    QString lastTerm_;
};

} // namespace marlune::qt
