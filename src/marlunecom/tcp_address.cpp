#include "marlunecom/tcp_address.h"

#include <charconv>

namespace marlune::marlunecom {
namespace {

std::optional<std::uint16_t> ParsePort(std::string_view digits)
{
    unsigned value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc{} || end != digits.data() + digits.size() || value < 1 || value > 65535)
        return std::nullopt;
    return static_cast<std::uint16_t>(value);
}

std::optional<TcpAddress> HostAndPort(std::string_view host, std::optional<std::uint16_t> port)
{
    if (host.empty() || !port)
        return std::nullopt;
    return TcpAddress{std::string(host), *port};
}

} // namespace

std::optional<TcpAddress> ParseTcpAddress(std::string_view address, std::uint16_t defaultPort)
{
    if (address.empty())
        return std::nullopt;

    if (address.front() == '[') {
        const auto close = address.find(']');
        if (close == std::string_view::npos)
            return std::nullopt;
        const auto host = address.substr(1, close - 1);
        const auto rest = address.substr(close + 1);
        if (rest.empty())
            return HostAndPort(host, defaultPort);
        if (rest.front() != ':')
            return std::nullopt;
        return HostAndPort(host, ParsePort(rest.substr(1)));
    }

    const auto colon = address.find(':');
    if (colon == std::string_view::npos || address.find(':', colon + 1) != std::string_view::npos)
        return HostAndPort(address, defaultPort); // no port, or a bare IPv6 address
    return HostAndPort(address.substr(0, colon), ParsePort(address.substr(colon + 1)));
}

} // namespace marlune::marlunecom
