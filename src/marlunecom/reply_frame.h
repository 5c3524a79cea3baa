#pragma once

#include <string_view>

namespace marlune::marlunecom {

inline constexpr char kCommandTerminator = '\r';
inline constexpr char kReplyTerminator = '\x04';

// The request frame as handed in: its bytes before the NUL, never more than the send buffer
// holds, so that a frame without its NUL is still read safely.
std::string_view RequestFrame(const char* request);

// The command of a request frame: the bytes before the first CR. A frame without a CR is not
// complete: a controller waits for the CR and does not answer.
struct RequestCommand {
    std::string_view command;
    bool complete = false;
};
RequestCommand CommandOfFrame(std::string_view frame);

// Writes `text` into a receive buffer of link::kReceiveBufferSize bytes with 0x04 behind it.
// A text that does not fit fills the buffer and has no terminator, as a library that stops
// at the end of its buffer leaves it.
void WriteReplyFrame(std::string_view text, char* reply);

} // namespace marlune::marlunecom
