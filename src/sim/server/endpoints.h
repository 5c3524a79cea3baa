#pragma once

#include <cstdint>
#include <string>

namespace marlune::sim {

// A listening TCP socket; its file descriptor and the port it got, or -1 and why not.
struct TcpListener {
    int fd = -1;
    std::uint16_t port = 0;
    std::string error;
};
TcpListener OpenTcpListener(const std::string& address, std::uint16_t port);

// A pseudo-terminal in raw mode. The server keeps the slave side open itself, so
// that clients may come and go without the master seeing a hang-up.
struct PseudoTerminal {
    int master = -1;
    int slave = -1;
    std::string slavePath;
    std::string error;
};
PseudoTerminal OpenPseudoTerminal();

void SetNonBlocking(int fd);

} // namespace marlune::sim
