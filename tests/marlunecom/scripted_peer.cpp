#include "scripted_peer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace marlune::marlunecom::testing {
namespace {

constexpr int kPollMs = 10;

// Both ends block, so that a write waits for room.
void WriteAll(int fd, const std::string& bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto n = ::write(fd, bytes.data() + sent, bytes.size() - sent);
        if (n <= 0)
            return;
        sent += static_cast<std::size_t>(n);
    }
}

} // namespace

std::vector<std::string> ScriptedPeer::received() const
{
    const std::lock_guard lock(mutex_);
    return received_;
}

bool ScriptedPeer::waitReadable(int fd)
{
    while (!stop_) {
        pollfd request{fd, POLLIN, 0};
        const int ready = ::poll(&request, 1, kPollMs);
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
    return false;
}

bool ScriptedPeer::serve(int fd, const PeerScript& script)
{
    std::string pending;
    while (waitReadable(fd)) {
        char buffer[4096];
        const auto n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0)
            return false;
        pending.append(buffer, static_cast<std::size_t>(n));
        for (auto cr = pending.find('\r'); cr != std::string::npos; cr = pending.find('\r')) {
            const auto command = pending.substr(0, cr);
            pending.erase(0, cr + 1);
            {
                const std::lock_guard lock(mutex_);
                received_.push_back(command);
            }
            const auto reply = script(command);
            if (!reply)
                continue;
            std::this_thread::sleep_for(reply->delay);
            for (const auto& part : reply->parts) {
                WriteAll(fd, part);
                std::this_thread::sleep_for(std::chrono::milliseconds(2)); // apart, so that the link reads them apart
            }
            if (reply->hangUp)
                return true;
        }
    }
    return false;
}

void ScriptedPeer::stop()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
}

TcpPeer::TcpPeer(PeerScript script, std::uint16_t port) : listener_(::socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    socklen_t length = sizeof address;
    if (listener_ < 0 || ::bind(listener_, reinterpret_cast<sockaddr*>(&address), length) != 0
        || ::listen(listener_, 4) != 0
        || ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        if (listener_ >= 0)
            ::close(std::exchange(listener_, -1));
        return;
    }
    port_ = ntohs(address.sin_port);
    if (!script)
        return;
    thread_ = std::thread([this, script = std::move(script)] {
        while (waitReadable(listener_)) {
            if (const int connection = ::accept(listener_, nullptr, nullptr); connection >= 0) {
                serve(connection, script);
                ::close(connection);
            }
        }
    });
}

TcpPeer::~TcpPeer()
{
    stop();
    if (listener_ >= 0)
        ::close(listener_);
}

PtyPeer::PtyPeer(PeerScript script) : master_(::posix_openpt(O_RDWR | O_NOCTTY))
{
    termios settings{};
    if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0
        || (slave_ = ::open(::ptsname(master_), O_RDWR | O_NOCTTY | O_NONBLOCK)) < 0
        || ::tcgetattr(slave_, &settings) != 0) {
        closeAll();
        return;
    }
    devicePath_ = ::ptsname(master_);
    ::cfmakeraw(&settings);
    ::tcsetattr(slave_, TCSANOW, &settings);
    thread_ = std::thread([this, script = std::move(script)] {
        // A hang-up takes the device away: the link's side sees the line drop.
        if (serve(master_, script))
            closeAll();
    });
}

PtyPeer::~PtyPeer()
{
    stop();
    closeAll();
}

void PtyPeer::closeAll()
{
    if (slave_ >= 0)
        ::close(std::exchange(slave_, -1));
    if (master_ >= 0)
        ::close(std::exchange(master_, -1));
}

} // namespace marlune::marlunecom::testing
