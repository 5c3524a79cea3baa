#include "endpoints.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

namespace marlune::sim {

namespace {

std::string LastError(const std::string& what) { return what + ": " + std::strerror(errno); }

} // namespace

void SetNonBlocking(int fd) { ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL, 0) | O_NONBLOCK); }

TcpListener OpenTcpListener(const std::string& address, std::uint16_t port)
{
    TcpListener listener;
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    if (::inet_pton(AF_INET, address.c_str(), &where.sin_addr) != 1) {
        listener.error = "not an IPv4 address: " + address;
        return listener;
    }
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        listener.error = LastError("socket");
        return listener;
    }
    const int yes = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 || ::listen(fd, 8) != 0) {
        listener.error = LastError("bind " + address + ":" + std::to_string(port));
        ::close(fd);
        return listener;
    }
    socklen_t length = sizeof where;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&where), &length);
    SetNonBlocking(fd);
    listener.fd = fd;
    listener.port = ntohs(where.sin_port);
    return listener;
}

PseudoTerminal OpenPseudoTerminal()
{
    PseudoTerminal pty;
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) {
        pty.error = LastError("posix_openpt");
        if (master >= 0)
            ::close(master);
        return pty;
    }
    const char* name = ::ptsname(master);
    const int slave = name ? ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC) : -1;
    if (slave < 0) {
        pty.error = LastError("open pseudo-terminal");
        ::close(master);
        return pty;
    }
    termios mode{};
    ::tcgetattr(slave, &mode);
    ::cfmakeraw(&mode);
    ::tcsetattr(slave, TCSANOW, &mode);
    SetNonBlocking(master);
    pty.master = master;
    pty.slave = slave;
    pty.slavePath = name;
    return pty;
}

} // namespace marlune::sim
