#pragma once

#include <string_view>

namespace marlune::marlunecom {

// The text of an address buffer handed to open: its bytes before the NUL, never more than the
// address buffer holds, without the blanks and tabs around it that a settings file may carry.
std::string_view AddressText(const char* address);

} // namespace marlune::marlunecom
