#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

#include <string>
#include <vector>

namespace marlune::qt {

// What a stretch of a program line is, to the eye.
enum class ProgramWord { Command, Variable, Number, Comment, DefinedName };

QTextCharFormat ProgramWordFormat(ProgramWord word);

// Colours a program in the controller language: command words, I and V variables, numbers, and
// comments from ";" or "'" to the end of the line. Small letters count as capitals, as the
// controller reads them. Over all of it go the names of the project's definitions, wherever the
// download will replace them.
class ProgramHighlighter final : public QSyntaxHighlighter {
    Q_OBJECT

public:
    explicit ProgramHighlighter(QTextDocument* document);

    // The names in the order of the definition list; the program is coloured again when they change.
    void setDefinedNames(std::vector<std::string> names);

protected:
    void highlightBlock(const QString& text) override;

private:
    std::vector<std::string> definedNames_;
};

} // namespace marlune::qt
