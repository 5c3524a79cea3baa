#include "link/marlune_com.h"
#include "marlunecom/tcp_com.h"
#include "reply_buffer.h"
#include "scripted_peer.h"
#include "sim/controller.h"
#include "sim_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

constexpr LinkTimeouts kShortTimeouts{200ms, 200ms};
constexpr std::int32_t kEthernet = 2;

TEST(TcpComTest, APeerThatNeverAcceptsFailsTheExchange)
{
    testing::TcpPeer deaf; // listens; the system completes the connection, nobody answers
    TcpCom com(kShortTimeouts);
    const auto handle = testing::OpenLink(com, kEthernet, 0, deaf.address());
    ASSERT_GT(handle, 0);

    testing::ReplyBuffer reply;
    EXPECT_EQ(com.sendRecv(kEthernet, handle, "???\r", reply.fresh()), 0);
    EXPECT_EQ(reply.text(), "");
}

TEST(TcpComTest, TheAddressWithoutPortUsesTheDefaultPort)
{
    testing::TcpPeer peer([](const std::string&) { return testing::PeerReply{{"here\x04"}}; }, sim::kDefaultTcpPort);
    if (!peer.listening())
        GTEST_SKIP() << "port " << sim::kDefaultTcpPort << " is taken on this machine";
    TcpCom com(kShortTimeouts);
    const auto handle = testing::OpenLink(com, kEthernet, 0, " 127.0.0.1 ");
    ASSERT_GT(handle, 0);

    testing::ReplyBuffer reply;
    ASSERT_NE(com.sendRecv(kEthernet, handle, "???\r", reply.fresh()), 0);
    EXPECT_EQ(reply.text(), "here");
}

TEST(TcpComTest, APortWhereNobodyListensFailsTheOpen)
{
    std::string address;
    {
        const testing::TcpPeer gone;
        address = gone.address();
    }
    TcpCom com(kShortTimeouts);
    EXPECT_LE(testing::OpenLink(com, kEthernet, 0, address), 0);
}

#ifdef MARLUNE_SIM_EXECUTABLE

// marlune-sim serving on loopback, started afresh with its fault options.
class TcpComSimulatorTest : public ::testing::Test {
protected:
    std::int32_t start(std::vector<std::string> options = {})
    {
        options.insert(options.end(), {"--port", "0", "--exit-after", "60"});
        simulator = std::make_unique<marlune::testing::SimProcess>(MARLUNE_SIM_EXECUTABLE, options);
        const auto port = simulator->tcpPort();
        if (!port)
            return 0;
        return testing::OpenLink(com, kEthernet, 0, "127.0.0.1:" + std::to_string(*port));
    }

    std::int32_t exchange(std::int32_t handle, const char* frame)
    {
        return com.sendRecv(kEthernet, handle, frame, reply.fresh());
    }

    std::unique_ptr<marlune::testing::SimProcess> simulator;
    TcpCom com{kShortTimeouts};
    testing::ReplyBuffer reply;
};

TEST_F(TcpComSimulatorTest, ReadsTheStatusRecord)
{
    const auto handle = start();
    ASSERT_GT(handle, 0);
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_TRUE(reply.terminated());
    EXPECT_EQ(reply.text().substr(0, 1), "@");
}

struct FaultCase {
    std::string option;
    std::vector<bool> exchangesSucceed;
};

void PrintTo(const FaultCase& value, std::ostream* out) { *out << value.option; }

class TcpComSimulatorFaultTest : public TcpComSimulatorTest, public ::testing::WithParamInterface<FaultCase> {};

TEST_P(TcpComSimulatorFaultTest, TheFaultShowsInTheExchanges)
{
    const auto handle = start({"--fail", GetParam().option});
    ASSERT_GT(handle, 0);
    std::vector<bool> succeeded;
    for (std::size_t i = 0; i < GetParam().exchangesSucceed.size(); ++i)
        succeeded.push_back(exchange(handle, "???\r") != 0);
    EXPECT_EQ(succeeded, GetParam().exchangesSucceed);
}

INSTANTIATE_TEST_SUITE_P(Faults, TcpComSimulatorFaultTest,
                         ::testing::Values(FaultCase{"no-reply", {false, false}},
                                           FaultCase{"no-terminator", {false, false}},
                                           FaultCase{"garbage", {true, true}},
                                           FaultCase{"drop-after=2", {true, true, false, false}},
                                           FaultCase{"slow=20", {true, true}}, FaultCase{"slow=400", {false}}));

#endif

} // namespace
} // namespace marlune::marlunecom
