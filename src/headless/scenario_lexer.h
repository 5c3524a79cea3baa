#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::headless {

// A word of a statement: bare, or a quoted string with its escapes resolved.
struct Word {
    std::string text;
    bool quoted = false;
};

struct LexedLine {
    std::vector<Word> words; // empty for a blank line or a comment
    std::string error;       // what is wrong with the line, if anything
};

// Splits one line (without its line end) into words separated by blanks and tabs.
LexedLine LexLine(std::string_view line);

// "500ms" or "2s" in milliseconds.
std::optional<std::int64_t> ParseDuration(std::string_view word);

// A whole number in plain decimal, with an optional minus sign.
std::optional<std::int64_t> ParseInteger(std::string_view word);

} // namespace marlune::headless
