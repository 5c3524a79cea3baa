#include "sim_server.h"

#include "endpoints.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace marlune::sim {

namespace {

constexpr std::size_t kMaxClients = 16;
// Replies waiting for a client that does not read stop the reading of its commands, so that
// what the server holds for it stays bounded.
constexpr std::size_t kMaxBacklog = 64 * 1024;
constexpr std::int64_t kStalePartialMicros = 5'000'000; // a half command left this long is dropped
constexpr int kTickMs = 50;

} // namespace

SimServer::SimServer(ServerOptions options) : options_(std::move(options))
{
    controller_.failureModes() = options_.failures;
    started_ = std::chrono::steady_clock::now();
}

SimServer::~SimServer()
{
    for (auto& [id, link] : links_)
        ::close(link.fd);
    if (listener_ >= 0)
        ::close(listener_);
    if (ptySlave_ >= 0)
        ::close(ptySlave_);
    if (!ptyLinkMade_.empty()) {
        std::error_code ignored;
        std::filesystem::remove(ptyLinkMade_, ignored);
    }
}

std::int64_t SimServer::elapsedMicros() const
{
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - started_).count();
}

bool SimServer::start(std::ostream& out, std::string& error)
{
    if (!options_.eepromFile.empty()) {
        EepromFile file(options_.eepromFile);
        auto eeprom = file.load(error);
        if (!eeprom) {
            error = "the EEPROM file " + options_.eepromFile + " cannot be used: " + error;
            return false;
        }
        controller_.powerUpWith(std::move(*eeprom));
        eepromFile_ = std::move(file);
    }
    if (options_.tcp) {
        const TcpListener listener = OpenTcpListener(options_.bindAddress, options_.port);
        if (listener.fd < 0) {
            error = listener.error;
            return false;
        }
        listener_ = listener.fd;
        out << "tcp " << options_.bindAddress << ':' << listener.port << '\n';
    }
    if (options_.pty) {
        const PseudoTerminal pty = OpenPseudoTerminal();
        if (pty.master < 0) {
            error = pty.error;
            return false;
        }
        ptySlave_ = pty.slave;
        ptyId_ = nextId_++;
        Link& link = links_[ptyId_];
        link.fd = pty.master;
        link.socket = false;
        if (!options_.ptyLink.empty()) {
            namespace fs = std::filesystem;
            std::error_code ec;
            const fs::path where(options_.ptyLink);
            if (fs::is_symlink(fs::symlink_status(where, ec)))
                fs::remove(where, ec);
            if (where.has_parent_path())
                fs::create_directories(where.parent_path(), ec);
            fs::create_symlink(pty.slavePath, where, ec);
            if (ec) {
                error = "cannot make the link " + options_.ptyLink + ": " + ec.message();
                return false;
            }
            ptyLinkMade_ = options_.ptyLink;
        }
        out << "pty " << pty.slavePath << '\n';
    }
    out.flush();
    return true;
}

void SimServer::run(const volatile std::sig_atomic_t& stopRequested)
{
    const auto idleLimit = static_cast<std::int64_t>(options_.idleExitSeconds * 1e6);
    while (!stopRequested) {
        std::int64_t now = elapsedMicros();
        if (options_.exitAfterSeconds && now >= static_cast<std::int64_t>(*options_.exitAfterSeconds * 1e6))
            return;
        const bool clients = std::any_of(links_.begin(), links_.end(), [](const auto& l) { return l.second.socket; });
        if (!clients && now - lastActivity_ >= idleLimit)
            return;

        std::vector<pollfd> fds;
        std::vector<int> ids;
        if (listener_ >= 0) {
            fds.push_back({listener_, POLLIN, 0});
            ids.push_back(0);
        }
        for (const auto& [id, link] : links_) {
            const bool reading = link.outbox.size() + link.held < kMaxBacklog;
            const short events = static_cast<short>((reading ? POLLIN : 0) | (link.outbox.empty() ? 0 : POLLOUT));
            fds.push_back({link.fd, events, 0});
            ids.push_back(id);
        }
        if (::poll(fds.data(), fds.size(), pollTimeoutMs(now)) < 0 && errno != EINTR)
            return;
        now = elapsedMicros();
        for (std::size_t i = 0; i < fds.size(); ++i) {
            if (fds[i].revents == 0)
                continue;
            if (ids[i] == 0) {
                acceptClients(now);
                continue;
            }
            const auto found = links_.find(ids[i]);
            if (found == links_.end())
                continue;
            Link& link = found->second;
            bool alive = true;
            if (fds[i].revents & (POLLIN | POLLHUP | POLLERR))
                alive = readFrom(ids[i], link, now);
            if (alive && (fds[i].revents & POLLOUT))
                alive = flush(link);
            if (!alive || (link.closeWhenSent && link.outbox.empty()))
                closeLink(ids[i], now);
        }
        sendDueReplies(now);
        for (auto& [id, link] : links_)
            serve(id, link, now);
        for (auto& [id, link] : links_)
            link.reader.dropStale(now - kStalePartialMicros);
        controller_.advanceTo(now);
        keepEeprom();
    }
}

void SimServer::keepEeprom()
{
    std::string why;
    if (eepromFile_ && !eepromFile_->saveIfWritten(controller_.eeprom(), why))
        std::cerr << "marlune-sim: the EEPROM could not be kept in " << eepromFile_->path().string() << ": " << why
                  << '\n';
}

int SimServer::pollTimeoutMs(std::int64_t now) const
{
    std::int64_t timeout = kTickMs;
    for (const Pending& p : pending_)
        timeout = std::min(timeout, std::max<std::int64_t>(0, (p.due - now + 999) / 1000));
    return static_cast<int>(timeout);
}

void SimServer::acceptClients(std::int64_t now)
{
    for (;;) {
        const int fd = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0)
            return;
        const auto sockets = std::count_if(links_.begin(), links_.end(), [](const auto& l) { return l.second.socket; });
        if (static_cast<std::size_t>(sockets) >= kMaxClients) {
            // The client silent for longest makes room, so that silent ones cannot lock others out.
            const auto quietest = std::min_element(links_.begin(), links_.end(), [](const auto& a, const auto& b) {
                return std::pair(!a.second.socket, a.second.lastHeard)
                       < std::pair(!b.second.socket, b.second.lastHeard);
            });
            closeLink(quietest->first, now);
        }
        Link& link = links_[nextId_++];
        link.fd = fd;
        link.lastHeard = now;
        lastActivity_ = now;
    }
}

bool SimServer::readFrom(int id, Link& link, std::int64_t now)
{
    char buffer[4096];
    const ssize_t got = ::read(link.fd, buffer, sizeof buffer);
    if (got < 0)
        return errno == EAGAIN || errno == EINTR || !link.socket;
    if (got == 0)
        return !link.socket;
    link.lastHeard = now;
    link.reader.feed(std::string_view(buffer, static_cast<std::size_t>(got)), now);
    serve(id, link, now);
    return true;
}

void SimServer::serve(int id, Link& link, std::int64_t now)
{
    // Replies go out together: one write for all the commands of one read.
    for (;;) {
        std::optional<FrameReader::Frame> frame;
        while (link.outbox.size() + link.held < kMaxBacklog && (frame = link.reader.take()))
            answer(id, link, *frame, now);
        if (!flush(link) || !frame || link.outbox.size() + link.held >= kMaxBacklog)
            return;
    }
}

void SimServer::answer(int id, Link& link, const FrameReader::Frame& frame, std::int64_t now)
{
    lastActivity_ = now;
    if (link.dead || link.closeWhenSent)
        return;
    ++link.exchanges;
    std::optional<std::string> reply;
    if (frame.oversized) {
        reply = "?Command longer than " + std::to_string(FrameReader::kDefaultLimit) + " bytes";
    } else {
        controller_.advanceTo(now);
        reply = controller_.execute(frame.bytes);
    }
    const FailureModes& failures = options_.failures;
    if (failures.dropAfterExchanges >= 0 && link.exchanges >= failures.dropAfterExchanges) {
        // The link dies: a socket is closed, the pseudo-terminal falls silent.
        link.dead = !link.socket;
        link.closeWhenSent = link.socket;
    }
    if (!reply)
        return;
    std::string bytes = *reply;
    if (!failures.noTerminator)
        bytes.push_back('\x04');
    if (failures.slowReplyMs > 0) {
        link.held += bytes.size();
        pending_.push_back({now + failures.slowReplyMs * 1000LL, id, std::move(bytes)});
        return;
    }
    link.outbox += bytes;
}

bool SimServer::flush(Link& link)
{
    while (!link.outbox.empty()) {
        const ssize_t sent = link.socket ? ::send(link.fd, link.outbox.data(), link.outbox.size(), MSG_NOSIGNAL)
                                         : ::write(link.fd, link.outbox.data(), link.outbox.size());
        if (sent < 0)
            return errno == EAGAIN || errno == EINTR;
        link.outbox.erase(0, static_cast<std::size_t>(sent));
    }
    return true;
}

void SimServer::closeLink(int id, std::int64_t now)
{
    const auto found = links_.find(id);
    if (found == links_.end() || !found->second.socket)
        return;
    ::close(found->second.fd);
    links_.erase(found);
    lastActivity_ = now;
}

void SimServer::sendDueReplies(std::int64_t now)
{
    std::vector<int> finished;
    for (auto it = pending_.begin(); it != pending_.end();) {
        if (it->due > now) {
            ++it;
            continue;
        }
        const auto found = links_.find(it->link);
        if (found != links_.end()) {
            found->second.held -= it->bytes.size();
            found->second.outbox += it->bytes;
            if (!flush(found->second))
                finished.push_back(it->link);
        }
        it = pending_.erase(it);
    }
    for (const int id : finished)
        closeLink(id, now);
}

} // namespace marlune::sim
