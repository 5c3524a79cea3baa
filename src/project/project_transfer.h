#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::project {

// The lines of a prepared text as the transfer dialog puts them on the controller: each cleaned
// as the dialog cleans it, and those that clean to nothing left out.
std::vector<std::string> SentLines(std::string_view prepared);

// Where what the controller holds of program n first differs from what was sent, as the operator
// reads it; nothing when the two agree line for line.
std::optional<std::string> FirstDifference(int n, std::string_view prepared, std::string_view held);

// The project's name in a reply to "PROJ ": what stands between the first double quote and the
// next one, all that follows a lone one, and nothing without one.
std::string NameBetweenQuotes(std::string_view reply);

// The program set in a reply to "PRON": 15 when the controller has none ("?"), the number it
// answered, or nothing for a reply that is neither.
std::optional<std::int32_t> ProgramSetOf(std::string_view reply);

} // namespace marlune::project
