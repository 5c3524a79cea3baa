#include "link_test_support.h"

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

std::unique_ptr<ScriptedPeer> ScriptedPeer::onTcp(PeerScript script, std::uint16_t port)
{
    std::unique_ptr<ScriptedPeer> peer(new ScriptedPeer);
    peer->listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    socklen_t length = sizeof address;
    if (peer->listener_ < 0 || ::bind(peer->listener_, reinterpret_cast<sockaddr*>(&address), length) != 0
        || ::listen(peer->listener_, 4) != 0
        || ::getsockname(peer->listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return peer;
    peer->address_ = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    peer->thread_ = std::thread([peer = peer.get(), script = std::move(script)] {
        while (peer->waitReadable(peer->listener_)) {
            if (const int connection = ::accept(peer->listener_, nullptr, nullptr); connection >= 0) {
                peer->serve(connection, script);
                ::close(connection);
            }
        }
    });
    return peer;
}

std::unique_ptr<ScriptedPeer> ScriptedPeer::onPty(PeerScript script)
{
    std::unique_ptr<ScriptedPeer> peer(new ScriptedPeer);
    const int master = peer->master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    termios settings{};
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0
        || (peer->slave_ = ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_NONBLOCK)) < 0
        || ::tcgetattr(peer->slave_, &settings) != 0)
        return peer;
    peer->address_ = ::ptsname(master);
    ::cfmakeraw(&settings);
    ::tcsetattr(peer->slave_, TCSANOW, &settings);
    peer->thread_ = std::thread([peer = peer.get(), script = std::move(script)] {
        // A hang-up takes the device away: the link's side sees the line drop.
        if (peer->serve(peer->master_, script))
            peer->closeAll();
    });
    return peer;
}

ScriptedPeer::~ScriptedPeer()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
    closeAll();
}

void ScriptedPeer::closeAll()
{
    for (int* fd : {&listener_, &slave_, &master_}) {
        if (*fd >= 0)
            ::close(std::exchange(*fd, -1));
    }
}

} // namespace marlune::marlunecom::testing
