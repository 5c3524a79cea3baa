#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace marlune::marlunecom::testing {

// What a scripted peer does with one request.
struct PeerReply {
    std::vector<std::string> parts;    // written one after the other, 0x04 included where wanted
    std::chrono::milliseconds delay{}; // before the first part
    bool hangUp = false;               // close the connection or line afterwards
};
// The answer to a command (its bytes before the CR); nullopt stays silent.
using PeerScript = std::function<std::optional<PeerReply>(const std::string& command)>;

// The commands a peer received, in order; safe to read while it serves.
class ReceivedCommands {
public:
    void add(std::string command);
    std::vector<std::string> all() const;

private:
    mutable std::mutex mutex_;
    std::vector<std::string> commands_;
};

// A peer on 127.0.0.1, on the port given or else one of the system's choice, that serves one
// connection at a time by its script on a thread of its own. A peer without script listens
// and never accepts: the connection is made by the system and nothing ever answers.
class TcpPeer final {
public:
    explicit TcpPeer(PeerScript script = {}, std::uint16_t port = 0);
    ~TcpPeer();
    TcpPeer(const TcpPeer&) = delete;
    TcpPeer& operator=(const TcpPeer&) = delete;

    bool listening() const { return listener_ >= 0; }
    std::uint16_t port() const { return port_; }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
    std::vector<std::string> received() const { return received_.all(); }

private:
    void run(const PeerScript& script);

    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::atomic<bool> stop_{false};
    ReceivedCommands received_;
    std::thread thread_;
};

// A pseudo-terminal pair whose far side is served by a script: the near side is a serial
// device for SerialCom. The peer keeps the near side open as well, so that the line stays up
// between the link's opens.
class PtyPeer final {
public:
    explicit PtyPeer(PeerScript script);
    ~PtyPeer();
    PtyPeer(const PtyPeer&) = delete;
    PtyPeer& operator=(const PtyPeer&) = delete;

    bool ready() const { return !devicePath_.empty(); }
    const std::string& devicePath() const { return devicePath_; }
    std::vector<std::string> received() const { return received_.all(); }

private:
    void closeAll();

    int master_ = -1;
    int slave_ = -1;
    std::string devicePath_;
    std::atomic<bool> stop_{false};
    ReceivedCommands received_;
    std::thread thread_;
};

} // namespace marlune::marlunecom::testing
