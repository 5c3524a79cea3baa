#include "marlunecom/com_port_name.h"

#include <charconv>
#include <cstdlib>

namespace marlune::marlunecom {
namespace {

bool HasComPrefix(std::string_view address)
{
    constexpr std::string_view prefix = "COM";
    if (address.size() <= prefix.size())
        return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if ((address[i] & ~0x20) != prefix[i])
            return false;
    }
    return true;
}

std::optional<unsigned> ComNumber(std::string_view address)
{
    if (!HasComPrefix(address))
        return std::nullopt;
    const auto digits = address.substr(3);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc{} || end != digits.data() + digits.size() || number == 0)
        return std::nullopt;
    return number;
}

} // namespace

std::optional<std::string> ComPortDevice(std::string_view address, const char* comDir)
{
    if (!address.empty() && address.front() == '/')
        return std::string(address);
    const auto number = ComNumber(address);
    if (!number)
        return std::nullopt;
    if (comDir != nullptr && *comDir != '\0')
        return std::string(comDir) + "/COM" + std::to_string(*number);
    return "/dev/ttyACM" + std::to_string(*number - 1);
}

std::optional<std::string> ComPortDevice(std::string_view address)
{
    return ComPortDevice(address, std::getenv(kComDirVariable));
}

} // namespace marlune::marlunecom
