#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marlune::headless {

// The scenario language's way of writing bytes: in double quotes, with \" \\ \r \n \t and
// \xHH for every other byte below 0x20, 0x7F and every byte above it.
std::string Quoted(std::string_view bytes);

// The bytes of the inside of a quoted string (without its quotes), or nothing when an escape
// is not one of the language's; `error` then says which.
std::optional<std::string> Unescape(std::string_view inside, std::string& error);

} // namespace marlune::headless
