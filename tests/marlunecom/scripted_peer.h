#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
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
class ScriptedPeer final {
public:
    // On 127.0.0.1, at `port` or one of the system's choice, one connection at a time. Without
    // script it listens and never accepts: the system makes the connection, nobody answers.
    static std::unique_ptr<ScriptedPeer> onTcp(PeerScript script, std::uint16_t port = 0);
    // On the far side of a pseudo-terminal whose near side, a serial device for SerialCom, the
    // peer keeps open as well, so that the line stays up between the link's opens.
    static std::unique_ptr<ScriptedPeer> onPty(PeerScript script);

    ~ScriptedPeer();
    ScriptedPeer(const ScriptedPeer&) = delete;
    ScriptedPeer& operator=(const ScriptedPeer&) = delete;

    bool ready() const { return !address_.empty(); }
    const std::string& address() const { return address_; } // "127.0.0.1:port" or the device's path
    std::vector<std::string> received() const;

private:
    ScriptedPeer() = default;
    bool waitReadable(int fd);
    // Serves requests on `fd` until the stream ends, the script hangs up (then true) or the end.
    bool serve(int fd, const PeerScript& script);
    void closeAll();

    int listener_ = -1;
    int master_ = -1;
    int slave_ = -1;
    std::string address_;
    std::atomic<bool> stop_{false};
    mutable std::mutex mutex_;
    std::vector<std::string> received_;
    std::thread thread_;
};

} // namespace marlune::marlunecom::testing
