#pragma once

#include <chrono>

namespace marlune::marlunecom {

// How long a link waits before it gives up. The defaults suit an operator's desk: a failed
// open or a silent controller costs about two seconds once; after that the link is lost and
// the exchanges of one operator action share a short probe, so that no action waits much
// longer than one reply time-out whatever the controller does. Tests pass shorter times.
struct LinkTimeouts {
    std::chrono::milliseconds connect{2000}; // TCP connection set-up, name look-up included
    std::chrono::milliseconds reply{2000};   // from sending a request to the reply's 0x04
    // What the exchanges on a lost link that follow one another without a pause may wait in
    // all, reconnecting or draining included; once it is spent they fail at once and send
    // nothing. An exchange after a pause as long as the probe has it afresh.
    std::chrono::milliseconds probe{200};
    // How long a serial line must stay silent after a lost reply before a request goes out,
    // so that the late reply is drained rather than taken for the next; part of the probe.
    std::chrono::milliseconds quiet{100};
};

} // namespace marlune::marlunecom
