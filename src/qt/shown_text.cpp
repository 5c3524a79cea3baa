#include "qt/shown_text.h"

#include <QList>

#include "forms/text.h"

namespace marlune::qt {

namespace {

// A CR that is not shown in a multi-line widget: every CR, since a line's LF stands for the pair.
bool Hidden(std::string_view ansi, std::size_t i, bool multiLine) { return multiLine && ansi[i] == '\r'; }

} // namespace

QString ShownText(std::string_view ansi, bool multiLine)
{
    if (!multiLine)
        return QString::fromStdString(forms::AnsiToUtf8(ansi));
    std::string visible;
    visible.reserve(ansi.size());
    for (std::size_t i = 0; i < ansi.size(); ++i) {
        if (!Hidden(ansi, i, multiLine))
            visible.push_back(ansi[i]);
    }
    return QString::fromStdString(forms::AnsiToUtf8(visible));
}

std::string ModelText(const QString& shown, bool multiLine)
{
    const std::string ansi = forms::Utf8ToAnsi(shown.toStdString());
    if (!multiLine)
        return ansi;
    std::string text;
    text.reserve(ansi.size() + ansi.size() / 16);
    for (char c : ansi) {
        if (c == '\n')
            text.push_back('\r');
        if (c != '\r')
            text.push_back(c);
    }
    return text;
}

std::optional<std::string> UnwritableCharacter(const QString& shown)
{
    for (const char32_t c : shown.toUcs4()) {
        if (c != U'?' && forms::Utf8ToAnsi(QString::fromUcs4(&c, 1).toStdString()) == "?")
            return QStringLiteral("U+%1").arg(static_cast<uint>(c), 4, 16, QLatin1Char('0')).toUpper().toStdString();
    }
    return std::nullopt;
}

std::string UnwritableMessage(const std::string& character)
{
    return "The character " + character
           + " cannot be written in the controller's code page, so the text was left as it was and nothing was sent.";
}

int ShownPosition(std::string_view ansi, int pos, bool multiLine)
{
    int shown = 0;
    const std::size_t end = std::min(ansi.size(), static_cast<std::size_t>(std::max(pos, 0)));
    for (std::size_t i = 0; i < end; ++i) {
        if (!Hidden(ansi, i, multiLine))
            ++shown;
    }
    return shown;
}

int ModelPosition(std::string_view ansi, int shownPos, bool multiLine)
{
    int shown = 0;
    std::size_t i = 0;
    for (; i < ansi.size(); ++i) {
        if (Hidden(ansi, i, multiLine))
            continue;
        if (shown == shownPos) {
            // A position before a line break stands before its CR.
            while (i > 0 && Hidden(ansi, i - 1, multiLine))
                --i;
            return static_cast<int>(i);
        }
        ++shown;
    }
    return static_cast<int>(i);
}

} // namespace marlune::qt
