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

// A peer that serves by its script on a thread of its own and keeps the commands it received.
class ScriptedPeer {
public:
    ScriptedPeer(const ScriptedPeer&) = delete;
    ScriptedPeer& operator=(const ScriptedPeer&) = delete;
    std::vector<std::string> received() const;

protected:
    ScriptedPeer() = default;
    ~ScriptedPeer() = default;
    // Serves requests on `fd` until the stream ends, the script hangs up (then true) or stop().
    bool serve(int fd, const PeerScript& script);
    bool waitReadable(int fd);
    void stop();

    std::thread thread_;

private:
    std::atomic<bool> stop_{false};
    mutable std::mutex mutex_;
    std::vector<std::string> received_;
};

// A peer on 127.0.0.1, on the port given or else one of the system's choice, that serves one
// connection at a time. A peer without script listens and never accepts: the connection is
// made by the system and nothing ever answers.
class TcpPeer final : public ScriptedPeer {
public:
    explicit TcpPeer(PeerScript script = {}, std::uint16_t port = 0);
    ~TcpPeer();

    bool listening() const { return listener_ >= 0; }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

private:
    int listener_ = -1;
    std::uint16_t port_ = 0;
};

// A pseudo-terminal pair whose far side is served by the script: the near side is a serial
// device for SerialCom. The peer keeps the near side open as well, so that the line stays up
// between the link's opens.
class PtyPeer final : public ScriptedPeer {
public:
    explicit PtyPeer(PeerScript script);
    ~PtyPeer();

    bool ready() const { return !devicePath_.empty(); }
    const std::string& devicePath() const { return devicePath_; }

private:
    void closeAll();

    int master_ = -1;
    int slave_ = -1;
    std::string devicePath_;
};

} // namespace marlune::marlunecom::testing
