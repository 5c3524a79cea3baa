#pragma once

#include <chrono>
#include <string_view>

class QIODevice;

namespace marlune::marlunecom {

// One exchange over a byte stream (a TCP socket, a serial port) in blocking use: the request
// frame goes out, the reply comes back up to its 0x04 and is written into a receive buffer of
// link::kReceiveBufferSize bytes, with the 0x04 behind it where it fits. A reply longer than
// the buffer fills it and is read to its end and dropped, so that it cannot answer the next
// request. A reply that fills the buffer without a 0x04 is read to the buffer's end and
// succeeds when nothing more comes within `timeout`. Returns false when the request could not
// be written, or when no 0x04 came within `timeout` before the buffer was full; the device's
// own state then tells whether the stream is gone.
bool ExchangeOverStream(QIODevice& device, std::string_view request, char* reply, std::chrono::milliseconds timeout);

} // namespace marlune::marlunecom
