#include <array>
#include <string>

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

// The scenarios prove what a request's own reply, fail and reply-once do and what the log holds;
// `fail * N` counting down, ahead of the failures of one request, is proved here.
TEST(ScriptedController, FailAnyFailsTheNextExchangesWhateverTheyAskBeforeOneRequestsFailures)
{
    ScriptedController controller;
    controller.setDefaultReply("OK");
    controller.failNext("I1", 1);
    controller.failAny(1);
    std::string results;
    for (const char* frame : {"I1\r", "I2\r", "I1\r", "I1\r"})
        results += Exchange(controller, frame) + " ";
    EXPECT_EQ(results, "FAIL OK FAIL OK ");
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
