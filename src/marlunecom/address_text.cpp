#include "marlunecom/address_text.h"

#include "link/marlune_com.h"

#include <cstring>

namespace marlune::marlunecom {

std::string_view AddressText(const char* address)
{
    const std::string_view text(address, ::strnlen(address, link::kAddressBufferSize));
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

} // namespace marlune::marlunecom
