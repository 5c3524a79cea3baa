#include "link_test_support.h"
#include "marlunecom/kind_router_com.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/tcp_address.h"
#include "marlunecom/tcp_com.h"
#include "sim/controller.h"
#include "sim_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
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

struct FaultCase {
    std::int32_t kind;    // 2 TCP, 3 the serial port on the simulator's pseudo-terminal
    const char* failMode; // nullptr: none
    std::vector<bool> exchangesSucceed;
};

class SimulatorLinkTest : public ::testing::TestWithParam<FaultCase> {};

// marlune-sim serving on loopback, started afresh with its fault mode: without one it answers
// the status request with its record.
TEST_P(SimulatorLinkTest, TheFaultShowsInTheExchanges)
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
    KindRouterCom com{nullptr, std::make_unique<TcpCom>(kShortTimeouts), std::make_unique<SerialCom>(kShortTimeouts)};
    const auto handle = testing::OpenLink(com, c.kind, 0, *address);
    ASSERT_GT(handle, 0);

    testing::ReplyBuffer reply;
    std::vector<bool> succeeded;
    for (std::size_t i = 0; i < c.exchangesSucceed.size(); ++i)
        succeeded.push_back(com.sendRecv(c.kind, handle, "???\r", reply.fresh()) != 0);
    EXPECT_EQ(succeeded, c.exchangesSucceed);
    EXPECT_TRUE(c.failMode != nullptr || (reply.terminated() && reply.text().substr(0, 1) == "@"));
}

INSTANTIATE_TEST_SUITE_P(Faults, SimulatorLinkTest,
                         ::testing::Values(FaultCase{2, nullptr, {true}}, FaultCase{3, nullptr, {true}},
                                           FaultCase{2, "no-reply", {false, false}},
                                           FaultCase{2, "no-terminator", {false, false}},
                                           FaultCase{2, "garbage", {true, true}},
                                           FaultCase{2, "drop-after=2", {true, true, false, false}},
                                           FaultCase{2, "slow=20", {true, true}}, FaultCase{2, "slow=400", {false}}));

#endif

} // namespace
} // namespace marlune::marlunecom
