#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::sim {

// Cuts a byte stream into commands: a command ends at CR, LF is ignored. The
// buffer is bounded: a command longer than the limit is dropped up to its CR and
// reported once, so that a flood of bytes cannot grow memory.
class FrameReader final {
public:
    static constexpr std::size_t kDefaultLimit = 4096;

    struct Frame {
        std::string bytes;
        bool oversized = false; // the bytes were dropped; answer with an error
    };

    explicit FrameReader(std::size_t limit = kDefaultLimit) : limit_(limit) {}

    // Feeds bytes; `take` gives the frames complete so far, one per call.
    void feed(std::string_view bytes, std::int64_t micros);
    std::optional<Frame> take();
    // A partial command that has seen no byte since `micros` is thrown away:
    // its sender is gone and must not spoil the next one's command.
    void dropStale(std::int64_t micros);
    bool hasPartial() const { return !partial_.empty() || skipping_; }

private:
    std::size_t limit_;
    std::string partial_;
    bool skipping_ = false;
    std::int64_t lastByteAt_ = 0;
    std::string ready_;     // complete frames, each ended by a CR
    std::string oversized_; // one flag byte per complete frame: '1' for a dropped one
};

} // namespace marlune::sim
