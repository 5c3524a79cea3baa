#pragma once

#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace marlune::marlunecom::testing {

// A receive buffer as the command exchange offers it: zeroed before each call.
struct ReplyBuffer {
    char* fresh()
    {
        std::fill(bytes.begin(), bytes.end(), '\0');
        return bytes.data();
    }
    // The reply text: the bytes before the first 0x04 or NUL.
    std::string text() const
    {
        return {bytes.begin(), std::find_first_of(bytes.begin(), bytes.end(), kEnds, kEnds + 2)};
    }
    bool terminated() const { return std::find(bytes.begin(), bytes.end(), kReplyTerminator) != bytes.end(); }

    static constexpr char kEnds[] = {kReplyTerminator, '\0'};
    std::vector<char> bytes = std::vector<char>(link::kReceiveBufferSize);
};

// Opens a link with an address buffer of the library's size holding `address`, and hands back
// what the library left there.
inline std::int32_t OpenLink(link::MarluneCom& com, std::int32_t kind, std::int32_t mode, std::string_view address,
                             std::string* rewritten = nullptr)
{
    std::vector<char> buffer(link::kAddressBufferSize, '\0');
    std::copy_n(address.begin(), std::min(address.size(), buffer.size() - 1), buffer.begin());
    const auto handle = com.open(kind, mode, buffer.data());
    if (rewritten != nullptr)
        *rewritten = buffer.data();
    return handle;
}

// What a scripted peer does with one request.
struct PeerReply {
    std::vector<std::string> parts; // written one after the other, 0x04 included where wanted
    bool hangUp = false;            // close the connection or line afterwards
};
// The answer to a command (its bytes before the CR); nullopt stays silent.
using PeerScript = std::function<std::optional<PeerReply>(const std::string& command)>;

// A peer that serves by its script on a thread of its own and keeps the commands it received.
class ScriptedPeer final {
public:
    // On 127.0.0.1, at `port` or one of the system's choice, one connection at a time.
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
