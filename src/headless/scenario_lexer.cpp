#include "headless/scenario_lexer.h"

#include <charconv>

#include "headless/quoted_text.h"

namespace marlune::headless {

namespace {

bool Blank(char c) { return c == ' ' || c == '\t'; }

} // namespace

LexedLine LexLine(std::string_view line)
{
    LexedLine lexed;
    std::size_t i = 0;
    const auto skipBlanks = [&] {
        while (i < line.size() && Blank(line[i]))
            ++i;
    };
    skipBlanks();
    if (i < line.size() && line[i] == '#')
        return lexed;
    while (i < line.size()) {
        if (line[i] == '"') {
            const std::size_t start = ++i;
            while (i < line.size() && line[i] != '"')
                i += line[i] == '\\' ? 2 : 1;
            if (i >= line.size()) {
                lexed.error = "a string has no closing quote";
                return lexed;
            }
            std::string error;
            auto text = Unescape(line.substr(start, i - start), error);
            if (!text) {
                lexed.error = error;
                return lexed;
            }
            ++i;
            if (i < line.size() && !Blank(line[i])) {
                lexed.error = "a string must be followed by a blank";
                return lexed;
            }
            lexed.words.push_back({std::move(*text), true});
        } else {
            const std::size_t start = i;
            while (i < line.size() && !Blank(line[i])) {
                if (line[i] == '"') {
                    lexed.error = "a quote inside a word; quote the whole word";
                    return lexed;
                }
                ++i;
            }
            lexed.words.push_back({std::string(line.substr(start, i - start)), false});
        }
        skipBlanks();
    }
    return lexed;
}

std::optional<std::int64_t> ParseInteger(std::string_view word)
{
    std::int64_t value = 0;
    const char* end = word.data() + word.size();
    const auto [ptr, ec] = std::from_chars(word.data(), end, value);
    if (word.empty() || ec != std::errc() || ptr != end)
        return std::nullopt;
    return value;
}

std::optional<std::int64_t> ParseDuration(std::string_view word)
{
    std::int64_t scale = 1;
    if (word.ends_with("ms")) {
        word.remove_suffix(2);
    } else if (word.ends_with("s")) {
        word.remove_suffix(1);
        scale = 1000;
    } else {
        return std::nullopt;
    }
    if (word.empty() || word.front() == '-' || word.front() == '+')
        return std::nullopt;
    const auto value = ParseInteger(word);
    // A day of virtual time is more than any scenario needs, and keeps the sums far from overflow.
    constexpr std::int64_t kLongest = 24LL * 3600 * 1000;
    if (!value || *value > kLongest / scale)
        return std::nullopt;
    return *value * scale;
}

} // namespace marlune::headless
