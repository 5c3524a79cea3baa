#pragma once

#include <chrono>

namespace marlune::marlunecom {

// How long a link waits before it gives up. The defaults suit an operator's desk: a failed
// open or a silent controller costs about two seconds once; after that the link is lost and
// the exchanges that follow share a short probe, so that no operator action waits much longer
// than one reply time-out whatever the controller does. Tests pass shorter times.
struct LinkTimeouts {
    std::chrono::milliseconds connect{2000}; // TCP connection set-up, name look-up included
    std::chrono::milliseconds reply{2000};   // from sending a request to the reply's 0x04
    // What the exchanges on a lost link may wait in all, reconnecting or draining included,
    // within each reply time-out; once it is spent they fail at once and send nothing.
    std::chrono::milliseconds probe{200};
};

} // namespace marlune::marlunecom
