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

bool waitReadable(int fd, const std::atomic<bool>& stop)
{
    while (!stop) {
        pollfd request{fd, POLLIN, 0};
        const int ready = ::poll(&request, 1, kPollMs);
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
    return false;
}

void writeAll(int fd, const std::string& bytes)
{
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const auto n = ::write(fd, bytes.data() + sent, bytes.size() - sent);
        if (n < 0 && errno == EAGAIN) {
            pollfd request{fd, POLLOUT, 0};
            ::poll(&request, 1, kPollMs);
            continue;
        }
        if (n <= 0)
            return;
        sent += static_cast<std::size_t>(n);
    }
}

// Serves requests on `fd` until the stream ends, the script hangs up (then true) or `stop`.
bool serve(int fd, const PeerScript& script, const std::atomic<bool>& stop, ReceivedCommands& received)
{
    std::string pending;
    while (waitReadable(fd, stop)) {
        char buffer[4096];
        const auto n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0)
            return false;
        pending.append(buffer, static_cast<std::size_t>(n));
        for (auto cr = pending.find('\r'); cr != std::string::npos; cr = pending.find('\r')) {
            const auto command = pending.substr(0, cr);
            pending.erase(0, cr + 1);
            received.add(command);
            const auto reply = script(command);
            if (!reply)
                continue;
            std::this_thread::sleep_for(reply->delay);
            for (const auto& part : reply->parts) {
                writeAll(fd, part);
                // Apart in time, so that the link reads them apart.
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
            if (reply->hangUp)
                return true;
        }
    }
    return false;
}

} // namespace

void ReceivedCommands::add(std::string command)
{
    const std::lock_guard lock(mutex_);
    commands_.push_back(std::move(command));
}

std::vector<std::string> ReceivedCommands::all() const
{
    const std::lock_guard lock(mutex_);
    return commands_;
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
    if (script)
        thread_ = std::thread([this, script = std::move(script)] { run(script); });
}

TcpPeer::~TcpPeer()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
    if (listener_ >= 0)
        ::close(listener_);
}

void TcpPeer::run(const PeerScript& script)
{
    while (waitReadable(listener_, stop_)) {
        const int connection = ::accept(listener_, nullptr, nullptr);
        if (connection < 0)
            continue;
        serve(connection, script, stop_, received_);
        ::close(connection);
    }
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
        if (serve(master_, script, stop_, received_))
            closeAll();
    });
}

PtyPeer::~PtyPeer()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
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
