#pragma once

#include <chrono>
#include <string_view>

class QDeadlineTimer;
class QIODevice;

namespace marlune::marlunecom {

// One exchange over a byte stream (a TCP socket, a serial port) in blocking use: the request
// frame goes out, the reply comes back up to its 0x04 and is written into a receive buffer of
// link::kReceiveBufferSize bytes, with the 0x04 behind it where it fits. A reply longer than
// the buffer fills it and is read to its end and dropped, so that it cannot answer the next
// request. A reply that fills the buffer without a 0x04 is read to the buffer's end and is
// answered when nothing more comes by the deadline. Returns false when the request could not
// be written, or when no 0x04 came by the deadline before the buffer was full; the device's
// own state then tells whether the stream is gone.
bool ExchangeOverStream(QIODevice& device, std::string_view request, char* reply, const QDeadlineTimer& deadline);

// Reads and drops what comes on `device` until nothing has come for `quiet`; false when the
// deadline passes first.
bool DrainUntilQuiet(QIODevice& device, std::chrono::milliseconds quiet, const QDeadlineTimer& deadline);

} // namespace marlune::marlunecom
