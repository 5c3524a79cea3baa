#pragma once

#include <string_view>

class QDeadlineTimer;
class QIODevice;

namespace marlune::marlunecom {

enum class ExchangeOutcome {
    Answered, // the reply is in the buffer
    NotSent,  // the request could not be written: no reply is owed
    NoReply,  // the request went out and its reply did not come by the deadline: it is owed
};

// One exchange over a byte stream (a TCP socket, a serial port) in blocking use: the request
// frame goes out, the reply comes back up to its 0x04 and is written into a receive buffer of
// link::kReceiveBufferSize bytes, with the 0x04 behind it where it fits. A reply longer than
// the buffer fills it and is read to its end and dropped, so that it cannot answer the next
// request. A reply that fills the buffer without a 0x04 is read to the buffer's end and is
// answered when nothing more comes by the deadline. The device's own state tells, after a
// failure, whether the stream is gone.
ExchangeOutcome ExchangeOverStream(QIODevice& device, std::string_view request, char* reply,
                                   const QDeadlineTimer& deadline);

// Reads and drops what comes on `device` until `owed` replies (each up to its 0x04) have
// arrived or the deadline passes; returns how many are still owed.
int DrainOwedReplies(QIODevice& device, int owed, const QDeadlineTimer& deadline);

} // namespace marlune::marlunecom
