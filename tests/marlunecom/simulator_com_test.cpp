#include "link/exchange_log.h"
#include "link_test_support.h"
#include "marlunecom/simulator_com.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t kTimeout = 100'000; // microseconds

class SimulatorComTest : public ::testing::Test {
protected:
    std::int32_t open() { return testing::OpenLink(com, 1, 1, ""); }

    std::int32_t exchange(std::int32_t handle, const char* frame)
    {
        return com.sendRecv(1, handle, frame, reply.fresh());
    }

    std::int64_t clock = 0; // a virtual clock that moves only when a test says so
    SimulatorCom com{[this] { return clock; }, 100ms};
    testing::ReplyBuffer reply;
};

struct Fault {
    sim::FailureModes modes;
    std::vector<bool> succeed; // one exchange each
    std::int64_t now;          // the controller's clock afterwards, the virtual clock frozen at 0
    const char* frame = "V1\r";
};

class SimulatorComFaultTest : public SimulatorComTest, public ::testing::WithParamInterface<Fault> {};

// An exchange that gets no answer costs the time-out even on a frozen clock, so that a loop
// of tries sees time pass, and is noted as a time-out. Afterwards a fresh handle answers at once, and the controller's
// clock never goes back to the frozen one.
TEST_P(SimulatorComFaultTest, ShowsInTheExchangesAndTheControllersClock)
{
    const Fault& fault = GetParam();
    const auto handle = open();
    com.failureModes() = fault.modes;
    link::TakeNotedFailure(); // what earlier tests left
    for (const bool succeeds : fault.succeed) {
        EXPECT_EQ(exchange(handle, fault.frame) != 0, succeeds);
        EXPECT_EQ(link::TakeNotedFailure(), succeeds ? link::ExchangeFailure::None : link::ExchangeFailure::TimedOut);
    }
    EXPECT_EQ(com.controller().now(), fault.now);
    const auto failed = std::count(fault.succeed.begin(), fault.succeed.end(), false);
    EXPECT_EQ(com.counters().failedExchanges, failed);

    com.failureModes() = {.dropAfterExchanges = com.failureModes().dropAfterExchanges}; // a drop happens once
    com.close(1, handle);
    const auto reopened = open();
    EXPECT_NE(exchange(reopened, "V1\r"), 0);
    EXPECT_EQ(com.controller().now(), fault.now);
    clock = fault.now + 5'000'000; // the controller follows a clock that moves
    EXPECT_NE(exchange(reopened, "V1\r"), 0);
    EXPECT_EQ(com.controller().now(), clock);
    EXPECT_EQ(com.counters().exchanges, static_cast<std::int64_t>(fault.succeed.size()) + 2);
    EXPECT_EQ(com.counters().closes, 1);
}

INSTANTIATE_TEST_SUITE_P(Faults, SimulatorComFaultTest,
                         ::testing::Values(Fault{{.noReply = true}, std::vector<bool>(11, false), 11 * kTimeout},
                                           Fault{{}, {false}, kTimeout, "V1"},
                                           Fault{{.garbageReply = true}, {true, true}, 0},
                                           Fault{{.noTerminator = true}, {true}, 0},
                                           Fault{{.slowReplyMs = 40}, {true, true}, 80'000},
                                           Fault{{.slowReplyMs = 100}, {false}, kTimeout},
                                           Fault{{.dropAfterExchanges = 2}, {true, true, false, false}, 2 * kTimeout}));

TEST_F(SimulatorComTest, TheReplyOrTheGarbageOrTheUnterminatedReplyIsWhatTheBufferGets)
{
    const auto handle = open();
    const std::string fresh = sim::Controller().execute("???").value_or("none"); // at power-up
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_EQ(std::string(reply.bytes.data(), fresh.size() + 2), fresh + kReplyTerminator + '\0') << "nothing behind";
    com.failureModes().garbageReply = true;
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_EQ(std::count(reply.bytes.begin(), reply.bytes.end(), kReplyTerminator), 1) << "none in the garbage";
    EXPECT_NE(reply.text()[0], '@') << "no status record";
    com.failureModes() = {.noTerminator = true};
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_EQ(reply.text().substr(0, fresh.size()), fresh);
    EXPECT_EQ(reply.text().size(), link::kReceiveBufferSize) << "the whole buffer is filled, without 0x04";
}

TEST_F(SimulatorComTest, HandlesAreDistinctAndAnUnknownOrClosedOneReachesNoController)
{
    com.failureModes().failFirstOpen = true;
    EXPECT_LE(open(), 0);
    const auto first = open();
    const auto second = open();
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    EXPECT_NE(first, second);
    com.close(1, first);
    for (const std::int32_t handle : {first, 0, -1, 99})
        EXPECT_EQ(exchange(handle, "V1\r"), 0) << handle;
    EXPECT_EQ(com.sendRecv(1, second, nullptr, reply.fresh()), 0);
    EXPECT_EQ(com.sendRecv(1, second, "V1\r", nullptr), 0);
    EXPECT_EQ(com.counters().failedExchanges, 6);
    EXPECT_EQ(com.controller().now(), 0) << "no time-out was spent";
    EXPECT_NE(exchange(second, "V1\r"), 0);
    EXPECT_EQ(com.counters().opens, 3);
    EXPECT_EQ(com.counters().failedOpens, 1) << "the first open fails once when asked";
}

} // namespace
} // namespace marlune::marlunecom
