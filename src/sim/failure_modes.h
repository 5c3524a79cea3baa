#pragma once

#include <cstdint>

namespace marlune::sim {

// Faults that a test switches on to see how the program copes with a bad controller or link.
// The controller model honours those about answers; the transports (in process, TCP,
// pseudo-terminal) honour those about framing, timing, opening and dropping.
struct FailureModes {
    bool noReply = false;                 // the controller stays silent: the exchange times out
    bool garbageReply = false;            // the controller answers with bytes that mean nothing
    bool noTerminator = false;            // the reply is sent without its closing 0x04
    std::int32_t slowReplyMs = 0;         // every reply is held back this long
    bool failFirstOpen = false;           // the next open fails once, then opens work again
    std::int32_t dropAfterExchanges = -1; // the link dies after this many more exchanges (-1: never)
};

// What happened on a link, for tests to assert on.
struct LinkCounters {
    std::int64_t opens = 0;
    std::int64_t failedOpens = 0;
    std::int64_t closes = 0;
    std::int64_t exchanges = 0;
    std::int64_t failedExchanges = 0;
};

} // namespace marlune::sim
