#include <array>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/scripted_controller.h"

namespace marlune::headless {
namespace {

// What an exchange gave: the reply text, or "FAIL" when the result's low 16 bits were zero.
std::string Exchange(ScriptedController& controller, const std::string& frame)
{
    std::array<char, link::kReceiveBufferSize> reply{};
    const std::int32_t result = controller.sendRecv(1, 1, frame.c_str(), reply.data());
    if ((result & 0xFFFF) == 0)
        return "FAIL";
    return std::string(reply.data());
}

struct PrecedenceCase {
    std::string name;
    std::function<void(ScriptedController&)> script;
    std::vector<std::string> requests; // frames without the CR
    std::vector<std::string> results;
};

void PrintTo(const PrecedenceCase& c, std::ostream* os) { *os << c.name; }

class ReplyPrecedence : public ::testing::TestWithParam<PrecedenceCase> {};

TEST_P(ReplyPrecedence, FollowsTheScript)
{
    ScriptedController controller;
    GetParam().script(controller);
    std::vector<std::string> results;
    for (const std::string& request : GetParam().requests)
        results.push_back(Exchange(controller, request + "\r"));
    EXPECT_EQ(results, GetParam().results);
}

INSTANTIATE_TEST_SUITE_P(
        Scripts, ReplyPrecedence,
        ::testing::Values(PrecedenceCase{"NothingScriptedGivesAnEmptyReply", [](ScriptedController&) {}, {"???"}, {""}},
                          PrecedenceCase{"DefaultAnswersWhatHasNoReplyOfItsOwn",
                                         [](ScriptedController& c) {
                                             c.setDefaultReply("OK");
                                             c.setReply("I1", "7");
                                         },
                                         {"I1", "I2"},
                                         {"7", "OK"}},
                          PrecedenceCase{"ALaterReplyReplacesTheEarlier",
                                         [](ScriptedController& c) {
                                             c.setReply("I1", "7");
                                             c.setReply("I1", "8");
                                         },
                                         {"I1", "I1"},
                                         {"8", "8"}},
                          PrecedenceCase{"OneTimeRepliesComeFirstOldestFirst",
                                         [](ScriptedController& c) {
                                             c.setReply("I48", "5");
                                             c.addReplyOnce("I48", "1");
                                             c.addReplyOnce("I48", "2");
                                         },
                                         {"I48", "I1", "I48", "I48"},
                                         {"1", "", "2", "5"}},
                          PrecedenceCase{"AFailureUsesUpNoReply",
                                         [](ScriptedController& c) {
                                             c.addReplyOnce("STORE", "once");
                                             c.failNext("STORE", 2);
                                         },
                                         {"STORE", "I1", "STORE", "STORE", "STORE"},
                                         {"FAIL", "", "FAIL", "once", ""}},
                          PrecedenceCase{"FailAnyCountsEveryRequestBeforeTheFailuresOfOne",
                                         [](ScriptedController& c) {
                                             c.setDefaultReply("OK");
                                             c.failNext("I1", 1);
                                             c.failAny(2);
                                         },
                                         {"I2", "I1", "I1", "I1"},
                                         {"FAIL", "FAIL", "FAIL", "OK"}},
                          PrecedenceCase{"RequestsMatchOnTheirBytesBeforeTheCr",
                                         [](ScriptedController& c) { c.setReply("X1", "moved"); },
                                         {"X1\rY2", "X1 ", "x1"},
                                         {"moved", "", ""}}),
        [](const ::testing::TestParamInfo<PrecedenceCase>& info) { return info.param.name; });

TEST(ScriptedController, OpensReturnTheQueuedHandlesThenOne)
{
    ScriptedController controller;
    controller.queueOpenResults({0, 5});
    controller.queueOpenResults({-3});
    std::vector<std::int32_t> handles;
    for (int i = 0; i < 5; ++i) {
        std::array<char, link::kAddressBufferSize> address{};
        handles.push_back(controller.open(2, 0, address.data()));
    }
    EXPECT_EQ(handles, (std::vector<std::int32_t>{0, 5, -3, 1, 1}));
}

TEST(ScriptedController, LogsEveryCallInOrder)
{
    ScriptedController controller;
    std::array<char, link::kAddressBufferSize> address{};
    std::copy_n("10.0.0.7", 8, address.begin());
    controller.open(2, 0, address.data());
    std::array<char, link::kReceiveBufferSize> reply{};
    controller.failAny(1);
    controller.sendRecv(2, 1, "X1000\r", reply.data());
    controller.close(2, 1);
    const auto& calls = controller.calls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].operation, ComCall::Operation::Open);
    EXPECT_EQ(calls[0].kind, 2);
    EXPECT_EQ(calls[0].mode, 0);
    EXPECT_EQ(calls[0].bytes, "10.0.0.7");
    EXPECT_EQ(calls[1].operation, ComCall::Operation::Exchange);
    EXPECT_EQ(calls[1].bytes, "X1000\r");
    EXPECT_EQ(calls[1].result, 0);
    EXPECT_EQ(calls[2].operation, ComCall::Operation::Close);
    EXPECT_EQ(calls[2].handle, 1);
}

TEST(ScriptedController, AReplyNeverRunsPastTheBuffer)
{
    ScriptedController controller;
    // One byte beyond the buffer, to see that it stays untouched.
    std::array<char, link::kReceiveBufferSize + 1> reply{};
    reply.back() = '#';
    controller.setDefaultReply(std::string(link::kReceiveBufferSize + 10, 'A'));
    controller.sendRecv(1, 1, "LIST\r", reply.data());
    EXPECT_EQ(reply[link::kReceiveBufferSize - 1], 'A');
    EXPECT_EQ(reply.back(), '#');

    controller.setDefaultReply(std::string(link::kReceiveBufferSize - 1, 'B'));
    controller.sendRecv(1, 1, "LIST\r", reply.data());
    EXPECT_EQ(reply[link::kReceiveBufferSize - 2], 'B');
    EXPECT_EQ(reply[link::kReceiveBufferSize - 1], '\0');
}

} // namespace
} // namespace marlune::headless
