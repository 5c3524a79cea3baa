#include "link_test_support.h"
#include "marlunecom/kind_router_com.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/tcp_address.h"
#include "marlunecom/tcp_com.h"
#include "sim/controller.h"
#include "sim_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

constexpr LinkTimeouts kShortTimeouts{200ms, 200ms};
constexpr std::int32_t kEthernet = 2;

static_assert(kDefaultTcpPort == sim::kDefaultTcpPort, "marlune-sim serves where the link looks by default");

TEST(TcpComTest, TheAddressWithoutPortUsesTheDefaultPort)
{
    const auto peer = testing::ScriptedPeer::onTcp([](const std::string&) { return testing::PeerReply{{"here\x04"}}; },
                                                   kDefaultTcpPort);
    if (!peer->ready())
        GTEST_SKIP() << "port " << kDefaultTcpPort << " is taken on this machine";
    TcpCom com(kShortTimeouts);
    const auto handle = testing::OpenLink(com, kEthernet, 0, " 127.0.0.1 ");
    ASSERT_GT(handle, 0);
    testing::ReplyBuffer reply;
    ASSERT_NE(com.sendRecv(kEthernet, handle, "???\r", reply.fresh()), 0);
    EXPECT_EQ(reply.text(), "here");
}

#ifdef MARLUNE_SIM_EXECUTABLE

// One request to marlune-sim, after a signal to its process where one is given.
struct SimStep {
    const char* command; // "???" is answered with the status record, "V1" with a number
    bool answered;
    int signal = 0; // SIGSTOP hangs the controller, SIGCONT brings it back
};

struct FaultCase {
    std::int32_t kind;    // 2 TCP, 3 the serial port on the simulator's pseudo-terminal
    const char* failMode; // nullptr: none
    std::vector<SimStep> steps;
    bool garbled = false; // the replies mean nothing, so they fit no command
};

void PrintTo(const FaultCase& c, std::ostream* os)
{
    *os << "kind " << c.kind << ", " << (c.failMode ? c.failMode : "no fault");
}

// Whether `reply` is what the controller answers to `command`, and not the reply to another.
bool Fits(const std::string& command, const std::string& reply)
{
    if (command == "???")
        return reply.substr(0, 1) == "@";
    if (command == "V1")
        return !reply.empty() && reply.find_first_not_of("0123456789") == std::string::npos;
    return true;
}

class SimulatorLinkTest : public ::testing::TestWithParam<FaultCase> {};

// marlune-sim serving on loopback, started afresh with its fault mode. A reply given up on,
// hung or just over the time-out, never answers a later request: the TCP link connects anew,
// the serial link drains it, and the link is sound again once a request is answered in time.
TEST_P(SimulatorLinkTest, EveryAnsweredRequestGetsItsOwnReply)
{
    const FaultCase& c = GetParam();
    std::vector<std::string> options = {"--port", "0", "--exit-after", "60"};
    if (c.kind == 3)
        options.push_back("--pty");
    if (c.failMode != nullptr)
        options.insert(options.end(), {"--fail", c.failMode});
    marlune::testing::SimProcess simulator(MARLUNE_SIM_EXECUTABLE, options);
    const auto port = simulator.tcpPort();
    ASSERT_TRUE(port);
    const auto address = c.kind == 3 ? simulator.lineAfter("pty ") : "127.0.0.1:" + std::to_string(*port);
    ASSERT_TRUE(address);
    // A probe long enough for a drain past a reply 50 ms over the time-out and for a reply
    // 250 ms late, so that the link is seen coming back.
    constexpr LinkTimeouts kTimeouts{200ms, 200ms, 800ms, 300ms};
    KindRouterCom com{nullptr, std::make_unique<TcpCom>(kTimeouts), std::make_unique<SerialCom>(kTimeouts)};
    const auto handle = testing::OpenLink(com, c.kind, 0, *address);
    ASSERT_GT(handle, 0);

    testing::ReplyBuffer reply;
    for (std::size_t i = 0; i < c.steps.size(); ++i) {
        const SimStep& step = c.steps[i];
        SCOPED_TRACE(::testing::Message() << "step " << i << ": " << step.command);
        if (step.signal != 0)
            simulator.signal(step.signal);
        const std::string frame = std::string(step.command) + kCommandTerminator;
        const bool answered = com.sendRecv(c.kind, handle, frame.c_str(), reply.fresh()) != 0;
        EXPECT_EQ(answered, step.answered);
        EXPECT_TRUE(!answered || c.garbled || (reply.terminated() && Fits(step.command, reply.text()))) << reply.text();
    }
}

const std::vector<SimStep> kHungThenBack = {
        {"???", true}, {"V1", false, SIGSTOP}, {"???", true, SIGCONT}, {"V1", true}};
const std::vector<SimStep> kJustOverTheTimeout = {{"???", false}, {"V1", true}, {"???", false}, {"V1", true}};
// Writing its EEPROM for 0.4 s, the controller drops the request it gets: the serial line is
// drained until quiet, not until that reply comes, so the next ask is answered.
const std::vector<SimStep> kAskAfterStore = {{"STORE", true}, {"V1", false}, {"V1", true}};
const std::vector<SimStep> kStatusTwice = {{"???", false}, {"???", false}};

INSTANTIATE_TEST_SUITE_P(
        Faults, SimulatorLinkTest,
        ::testing::Values(FaultCase{2, nullptr, kHungThenBack}, FaultCase{3, nullptr, kHungThenBack},
                          FaultCase{2, "slow=250", kJustOverTheTimeout}, FaultCase{3, "slow=250", kJustOverTheTimeout},
                          FaultCase{3, nullptr, kAskAfterStore}, FaultCase{2, "no-reply", kStatusTwice},
                          FaultCase{2, "no-terminator", kStatusTwice},
                          FaultCase{2, "garbage", {{"???", true}, {"???", true}}, true},
                          FaultCase{2, "drop-after=2", {{"???", true}, {"???", true}, {"???", false}, {"???", false}}},
                          FaultCase{2, "slow=20", {{"???", true}, {"V1", true}}}));

#endif

} // namespace
} // namespace marlune::marlunecom
