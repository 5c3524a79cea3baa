#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::marlunecom {

// The controller's port, used when an Ethernet address names none.
inline constexpr std::uint16_t kDefaultTcpPort = 5001;

struct TcpAddress {
    std::string host;
    std::uint16_t port = 0;
};

// Reads an Ethernet link address: "host" or "host:port", where host is a name, a dotted-quad
// address or a bracketed IPv6 address ("[::1]:5001"); a bare IPv6 address has no port.
// Without a port, `defaultPort` is used. Nothing else is an address: an empty host, a port
// that is no number from 1 to 65535, text behind the port.
std::optional<TcpAddress> ParseTcpAddress(std::string_view address, std::uint16_t defaultPort);

} // namespace marlune::marlunecom
