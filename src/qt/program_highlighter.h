#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace marlune::qt {

// What a stretch of a program line is, to the eye.
enum class ProgramWord { Command, Variable, Number, Comment };

QTextCharFormat ProgramWordFormat(ProgramWord word);

// Colours a program in the controller language: command words, I and V variables, numbers, and
// comments from ";" or "'" to the end of the line. Small letters count as capitals, as the
// controller reads them.
class ProgramHighlighter final : public QSyntaxHighlighter {
    Q_OBJECT

public:
    explicit ProgramHighlighter(QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;
};

} // namespace marlune::qt
