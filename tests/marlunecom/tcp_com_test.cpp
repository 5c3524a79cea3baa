#include "marlunecom/tcp_address.h"
#include "marlunecom/tcp_com.h"
#include "reply_buffer.h"
#include "scripted_peer.h"
#include "sim/controller.h"
#include "sim_process.h"

#include <gtest/gtest.h>

#include <chrono>
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
    std::vector<std::string> options;
    std::vector<bool> exchangesSucceed;
};

class TcpComSimulatorTest : public ::testing::TestWithParam<FaultCase> {};

// marlune-sim serving on loopback, started afresh with its fault options: without one it
// answers the status request with its record.
TEST_P(TcpComSimulatorTest, TheFaultShowsInTheExchanges)
{
    auto options = GetParam().options;
    options.insert(options.end(), {"--port", "0", "--exit-after", "60"});
    marlune::testing::SimProcess simulator(MARLUNE_SIM_EXECUTABLE, options);
    const auto port = simulator.tcpPort();
    ASSERT_TRUE(port);
    TcpCom com{kShortTimeouts};
    const auto handle = testing::OpenLink(com, kEthernet, 0, "127.0.0.1:" + std::to_string(*port));
    ASSERT_GT(handle, 0);

    testing::ReplyBuffer reply;
    std::vector<bool> succeeded;
    for (std::size_t i = 0; i < GetParam().exchangesSucceed.size(); ++i)
        succeeded.push_back(com.sendRecv(kEthernet, handle, "???\r", reply.fresh()) != 0);
    EXPECT_EQ(succeeded, GetParam().exchangesSucceed);
    EXPECT_TRUE(!GetParam().options.empty() || (reply.terminated() && reply.text().substr(0, 1) == "@"));
}

INSTANTIATE_TEST_SUITE_P(Faults, TcpComSimulatorTest,
                         ::testing::Values(FaultCase{{}, {true}}, FaultCase{{"--fail", "no-reply"}, {false, false}},
                                           FaultCase{{"--fail", "no-terminator"}, {false, false}},
                                           FaultCase{{"--fail", "garbage"}, {true, true}},
                                           FaultCase{{"--fail", "drop-after=2"}, {true, true, false, false}},
                                           FaultCase{{"--fail", "slow=20"}, {true, true}},
                                           FaultCase{{"--fail", "slow=400"}, {false}}));

#endif

} // namespace
} // namespace marlune::marlunecom
