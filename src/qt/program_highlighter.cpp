#include "qt/program_highlighter.h"

#include <QRegularExpression>
#include <QStringList>

#include <vector>

#include "project/definitions.h"
#include "qt/shown_text.h"

namespace marlune::qt {

namespace {

// The command and statement words of the controller language, as its manual lists them.
const char* const kCommandWords[] = {
        "ABS",   "INC",   "HSPD",     "LSPD",  "ACCEL",    "EHSPD",   "ELSPD", "EACCEL", "STOP",  "RSTOP",
        "ABORT", "HOME",  "LHOME",    "ZHOME", "MECLEAR",  "WAIT",    "DELAY", "DIO",    "EO",    "CO",
        "AI",    "JOYON", "JOYOFF",   "IPA",   "OPEN",     "PROG",    "CLEAR", "CLOSE",  "PSTAT", "UPLOAD",
        "LIST",  "RUN",   "QUIT",     "PAUSE", "CONTINUE", "PECLEAR", "PEMSG", "WHILE",  "IF",    "ELSE",
        "ENDIF", "END",   "ENDWHILE", "STORE", "LOAD",     "PROJ",    "PRON",
};

struct Rule {
    QRegularExpression pattern;
    ProgramWord word;
};

QRegularExpression Pattern(const QString& pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

// Later rules paint over earlier ones: a variable's digits are no number, a comment is all comment.
const std::vector<Rule>& Rules()
{
    static const std::vector<Rule> rules = [] {
        QStringList words;
        for (const char* word : kCommandWords)
            words << QString::fromLatin1(word);
        return std::vector<Rule>{
                {Pattern(QStringLiteral("\\d+")), ProgramWord::Number},
                // A variable may stand right behind an axis letter, as in XV5, but not inside a word (AI1).
                {Pattern(QStringLiteral("(?<![A-TVW])[IV]\\d+")), ProgramWord::Variable},
                // Axis letters straight behind a word belong to it: WAITXY, HOMEX+, EOX=1.
                {Pattern(QStringLiteral("\\b(?:%1)[XYZU]*(?![A-Z])").arg(words.join('|'))), ProgramWord::Command},
                {Pattern(QStringLiteral("[;'].*")), ProgramWord::Comment},
        };
    }();
    return rules;
}

} // namespace

QTextCharFormat ProgramWordFormat(ProgramWord word)
{
    QTextCharFormat format;
    switch (word) {
    case ProgramWord::Command:
        format.setForeground(QColor(0x1d, 0x4f, 0x91));
        format.setFontWeight(QFont::Bold);
        break;
    case ProgramWord::Variable: format.setForeground(QColor(0x8a, 0x2d, 0x8e)); break;
    case ProgramWord::Number: format.setForeground(QColor(0xa0, 0x52, 0x0a)); break;
    case ProgramWord::Comment:
        format.setForeground(QColor(0x5a, 0x7a, 0x5a));
        format.setFontItalic(true);
        break;
    case ProgramWord::DefinedName:
        format.setForeground(QColor(0x00, 0x6d, 0x6d));
        format.setBackground(QColor(0xe3, 0xf4, 0xf4));
        break;
    }
    return format;
}

ProgramHighlighter::ProgramHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {}

void ProgramHighlighter::setDefinedNames(std::vector<std::string> names)
{
    if (names == definedNames_)
        return;
    definedNames_ = std::move(names);
    rehighlight();
}

void ProgramHighlighter::highlightBlock(const QString& text)
{
    for (const Rule& rule : Rules()) {
        const QTextCharFormat format = ProgramWordFormat(rule.word);
        for (auto it = rule.pattern.globalMatch(text); it.hasNext();) {
            const QRegularExpressionMatch match = it.next();
            setFormat(static_cast<int>(match.capturedStart()), static_cast<int>(match.capturedLength()), format);
        }
    }
    if (definedNames_.empty())
        return;
    // A line of the editor holds no line end, so its characters stand one for one in its bytes.
    const std::string line = ModelText(text);
    if (project::KeepsItsNames(line))
        return;
    const QTextCharFormat format = ProgramWordFormat(ProgramWord::DefinedName);
    for (const project::NameMatch& match : project::FindDefinedNames(line, definedNames_))
        setFormat(static_cast<int>(match.start), static_cast<int>(match.length), format);
}

} // namespace marlune::qt
