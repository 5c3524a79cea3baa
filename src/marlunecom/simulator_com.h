#pragma once

#include "link/marlune_com.h"
#include "marlunecom/handle_table.h"
#include "marlunecom/link_timeouts.h"
#include "sim/controller.h"
#include "sim/eeprom_file.h"
#include "sim/failure_modes.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace marlune::marlunecom {

// The built-in simulated controller, in process: the link that works on any machine.
//
// Its time comes from a clock in microseconds: by default the steady clock since construction,
// in tests the virtual clock of the headless platform. Before each exchange the controller is
// brought up to that clock. An exchange that gets no answer costs the reply time-out, as it
// would on a real link; that time is added to the controller's own clock, which therefore runs
// ahead of a clock that does not move, so that a loop of tries sees time pass.
//
// The failure modes apply as on a real link: noReply and garbageReply come from the controller;
// noTerminator fills the whole receive buffer (the reply, then blanks) without a 0x04;
// slowReplyMs holds every reply back on the controller's clock, and one held back as long as
// the time-out or longer fails; failFirstOpen fails the next open once; dropAfterExchanges lets
// that many more exchanges through and then kills every open handle (later exchanges on them
// fail, new opens work).
//
// A failed exchange notes why for the communication log, as the real links do: an unknown
// handle refuses, a missing answer is a time-out.
//
// Any kind is accepted and the address is left as it is. The counters count calls: every
// open, close and exchange, and among them the failed opens and exchanges.
class SimulatorCom final : public link::MarluneCom {
public:
    using Clock = std::function<std::int64_t()>; // microseconds, never going back

    explicit SimulatorCom(Clock clock = {}, std::chrono::milliseconds replyTimeout = LinkTimeouts{}.reply);

    std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) override;
    std::int32_t close(std::int32_t kind, std::int32_t handle) override;
    std::int32_t sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply) override;

    // Keeps the controller's EEPROM in `file` from now on: what the file holds comes into memory
    // as at power-up, and every store is saved to it. False and why when the file is there but
    // cannot be read: the controller keeps its blank EEPROM and the file is left as it is.
    bool keepEepromIn(std::filesystem::path file, std::string& why);

    sim::Controller& controller() { return controller_; }
    sim::FailureModes& failureModes() { return controller_.failureModes(); }
    const sim::LinkCounters& counters() const { return counters_; }

private:
    struct SimulatedLink {
        bool dropped = false;
    };

    std::int32_t failExchange();
    std::int32_t timeOut();
    bool dropsNow();
    void keepEeprom();

    Clock clock_;
    std::int64_t replyTimeoutMicros_;
    sim::Controller controller_;
    sim::LinkCounters counters_;
    HandleTable<SimulatedLink> links_;
    std::optional<sim::EepromFile> eepromFile_;
};

} // namespace marlune::marlunecom
