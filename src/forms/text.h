#pragma once

#include <string>
#include <string_view>

namespace marlune::forms {

// Text in the program is bytes, one per character, in the Windows-1252 code page, as the
// controller and the files see it. These helpers are the one place where it meets Unicode.
std::string AnsiToUtf8(std::string_view ansi);
// Characters that Windows-1252 cannot hold become '?'.
std::string Utf8ToAnsi(std::string_view utf8);

// Upper case of the ASCII letters only, as the command tests of the forms use it.
std::string UpperAscii(std::string_view text);
bool ContainsUpper(std::string_view text, std::string_view upperWord);

} // namespace marlune::forms
