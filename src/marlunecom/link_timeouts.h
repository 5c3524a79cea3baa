#pragma once

#include <chrono>

namespace marlune::marlunecom {

// How long a link waits before it gives up. The defaults suit an operator's desk: a failed
// open or a silent controller costs about two seconds, a wait loop of eleven tries about
// twenty-two. Tests pass shorter times.
struct LinkTimeouts {
    std::chrono::milliseconds connect{2000}; // TCP connection set-up, name look-up included
    std::chrono::milliseconds reply{2000};   // from sending a request to the reply's 0x04
};

} // namespace marlune::marlunecom
