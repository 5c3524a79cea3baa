#pragma once

#include <QPlainTextEdit>

namespace marlune::qt {

// The editor of a program's text: a fixed-pitch font, line numbers in a left margin, the caret's
// line on a light background, and the controller language highlighted. It stays a
// QPlainTextEdit, so that the binder binds it as any multi-line text box.
class ProgramEditor final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ProgramEditor(QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Margin;

    // Room for every digit of the last line's number.
    int marginWidth() const;
    void placeMargin();
    void paintMargin(const QPaintEvent& event);
    void scrollMargin(const QRect& rect, int dy);
    void markCurrentLine();

    Margin* margin_;
};

} // namespace marlune::qt
