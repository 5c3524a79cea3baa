#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"
#include "marlunecom/simulator_com.h"
#include "reply_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t kTimeoutMicros = 100'000;

class SimulatorComTest : public ::testing::Test {
protected:
    std::int32_t open() { return testing::OpenLink(com, 1, 1, ""); }

    std::int32_t exchange(std::int32_t handle, const char* frame)
    {
        return com.sendRecv(1, handle, frame, reply.fresh());
    }

    // What a controller that saw nothing else says to `command` at power-up.
    static std::string freshReply(std::string_view command)
    {
        sim::Controller reference;
        return reference.execute(command).value_or("<no answer>");
    }

    std::int64_t clock = 0; // a virtual clock that moves only when a test says so
    SimulatorCom com{[this] { return clock; }, 100ms};
    testing::ReplyBuffer reply;
};

TEST_F(SimulatorComTest, AnExchangeWritesTheControllersReplyWithItsTerminator)
{
    const auto handle = open();
    ASSERT_GT(handle, 0);

    ASSERT_NE(exchange(handle, "???\r"), 0);
    const auto expected = freshReply("???");
    EXPECT_EQ(reply.text(), expected);
    ASSERT_TRUE(reply.terminated());
    EXPECT_EQ(reply.bytes()[expected.size() + 1], '\0') << "wrote behind the terminator";
}

TEST_F(SimulatorComTest, TheControllerFollowsTheClockBeforeEachExchange)
{
    const auto handle = open();
    clock = 5'000'000;
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_EQ(com.controller().now(), 5'000'000);
}

TEST_F(SimulatorComTest, ASilentControllerCostsTheTimeOutEvenOnAFrozenClock)
{
    const auto handle = open();
    com.failureModes().noReply = true;
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(exchange(handle, "V1\r"), 0);
    EXPECT_EQ(com.controller().now(), 11 * kTimeoutMicros);
    EXPECT_EQ(com.counters().failedExchanges, 11);

    com.failureModes().noReply = false;
    EXPECT_NE(exchange(handle, "V1\r"), 0);
    EXPECT_EQ(com.controller().now(), 11 * kTimeoutMicros) << "an answered exchange takes no time of its own";

    clock = 3 * kTimeoutMicros;
    EXPECT_NE(exchange(handle, "V1\r"), 0);
    EXPECT_EQ(com.controller().now(), 11 * kTimeoutMicros) << "the controller's clock never goes back";
}

TEST_F(SimulatorComTest, AWaitLoopAfterStoreEndsOnAFrozenClock)
{
    SimulatorCom patient{[this] { return clock; }};
    const auto handle = testing::OpenLink(patient, 1, 1, "");
    ASSERT_NE(patient.sendRecv(1, handle, "STORE\r", reply.fresh()), 0);

    int tries = 0;
    while (tries < 11 && patient.sendRecv(1, handle, "V1\r", reply.fresh()) == 0)
        ++tries;
    EXPECT_LT(tries, 11) << "the controller never came back from its EEPROM write";
    EXPECT_EQ(patient.counters().failedExchanges, tries);
}

TEST_F(SimulatorComTest, AFrameWithoutCrGetsNoAnswer)
{
    const auto handle = open();
    EXPECT_EQ(exchange(handle, "V1"), 0);
    EXPECT_EQ(com.controller().now(), kTimeoutMicros);
}

TEST_F(SimulatorComTest, AGarbageReplyStillCompletesTheExchange)
{
    const auto handle = open();
    com.failureModes().garbageReply = true;
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_TRUE(reply.terminated());
    EXPECT_NE(reply.text(), freshReply("???"));
}

TEST_F(SimulatorComTest, AReplyWithoutTerminatorFillsTheWholeBuffer)
{
    const auto handle = open();
    com.failureModes().noTerminator = true;
    ASSERT_NE(exchange(handle, "???\r"), 0);

    const auto& bytes = reply.bytes();
    const auto expected = freshReply("???");
    EXPECT_EQ(std::string(bytes.data(), expected.size()), expected);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), kReplyTerminator), 0);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\0'), 0);
}

TEST_F(SimulatorComTest, ASlowReplyTakesItsTimeAndFailsWhenSlowerThanTheTimeOut)
{
    const auto handle = open();
    com.failureModes().slowReplyMs = 40;
    ASSERT_NE(exchange(handle, "???\r"), 0);
    EXPECT_EQ(com.controller().now(), 40'000);

    com.failureModes().slowReplyMs = kTimeoutMicros / 1000;
    EXPECT_EQ(exchange(handle, "???\r"), 0);
    EXPECT_EQ(com.controller().now(), 40'000 + kTimeoutMicros);
}

TEST_F(SimulatorComTest, TheFirstOpenFailsOnceWhenAsked)
{
    com.failureModes().failFirstOpen = true;
    EXPECT_LE(open(), 0);
    EXPECT_GT(open(), 0);
    EXPECT_FALSE(com.failureModes().failFirstOpen);
    EXPECT_EQ(com.counters().opens, 2);
    EXPECT_EQ(com.counters().failedOpens, 1);
}

TEST_F(SimulatorComTest, ADroppedLinkFailsUntilReopened)
{
    const auto handle = open();
    com.failureModes().dropAfterExchanges = 2;
    EXPECT_NE(exchange(handle, "V1\r"), 0);
    EXPECT_NE(exchange(handle, "V1\r"), 0);
    EXPECT_EQ(exchange(handle, "V1\r"), 0);
    EXPECT_EQ(exchange(handle, "V1\r"), 0) << "a dead handle stays dead";

    com.close(1, handle);
    const auto reopened = open();
    ASSERT_GT(reopened, 0);
    EXPECT_NE(exchange(reopened, "V1\r"), 0);
    EXPECT_EQ(com.counters().exchanges, 5);
    EXPECT_EQ(com.counters().failedExchanges, 2);
    EXPECT_EQ(com.counters().closes, 1);
}

TEST_F(SimulatorComTest, HandlesAreDistinctAndDieWhenClosed)
{
    const auto first = open();
    const auto second = open();
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    EXPECT_NE(first, second);

    com.close(1, first);
    EXPECT_EQ(exchange(first, "V1\r"), 0);
    EXPECT_NE(exchange(second, "V1\r"), 0);
    EXPECT_EQ(com.controller().now(), 0) << "a call on a closed handle reaches no controller";
}

class SimulatorComBadHandleTest : public SimulatorComTest, public ::testing::WithParamInterface<std::int32_t> {};

TEST_P(SimulatorComBadHandleTest, AnExchangeOnAnUnknownHandleFails)
{
    open();
    EXPECT_EQ(exchange(GetParam(), "V1\r"), 0);
    EXPECT_EQ(com.counters().failedExchanges, 1);
}

INSTANTIATE_TEST_SUITE_P(Handles, SimulatorComBadHandleTest, ::testing::Values(0, -1, 2, 99));

TEST_F(SimulatorComTest, MissingBuffersFailTheExchange)
{
    const auto handle = open();
    EXPECT_EQ(com.sendRecv(1, handle, nullptr, reply.fresh()), 0);
    EXPECT_EQ(com.sendRecv(1, handle, "V1\r", nullptr), 0);
}

} // namespace
} // namespace marlune::marlunecom
