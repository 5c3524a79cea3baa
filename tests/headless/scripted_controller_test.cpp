#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "headless/scenario_lexer.h"
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

std::vector<std::string> Words(std::string_view line)
{
    std::vector<std::string> words;
    for (const Word& word : LexLine(line).words)
        words.push_back(word.text);
    return words;
}

// A script in the words of the scenario statements (`reply`, `reply-once`, `fail`; "*" for every
// request, statements apart by ';'), and the exchanges that follow as request and result pairs.
TEST(ScriptedController, RepliesFollowTheScript)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
            {"", R"(??? "")"}, // nothing scripted gives an empty reply
            {"reply * OK; reply I1 7", "I1 7 I2 OK"},
            {"reply I1 7; reply I1 8", "I1 8 I1 8"},
            {"reply I48 5; reply-once I48 1; reply-once I48 2", R"(I48 1 I1 "" I48 2 I48 5)"},
            {"reply-once STORE once; fail STORE 2", R"(STORE FAIL I1 "" STORE FAIL STORE once STORE "")"},
            {"reply * OK; fail I1 1; fail * 2", "I2 FAIL I1 FAIL I1 FAIL I1 OK"},
            {"reply X1 moved", R"("X1\rY2" moved "X1 " "" x1 "")"}}; // requests match on their bytes before the CR
    for (const auto& [script, exchangeText] : cases) {
        SCOPED_TRACE(script);
        ScriptedController controller;
        std::string_view rest = script;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(';'), rest.size());
            const auto w = Words(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
            if (w[0] == "reply")
                w[1] == "*" ? controller.setDefaultReply(w[2]) : controller.setReply(w[1], w[2]);
            else if (w[0] == "reply-once")
                controller.addReplyOnce(w[1], w[2]);
            else
                w[1] == "*" ? controller.failAny(std::stoi(w[2])) : controller.failNext(w[1], std::stoi(w[2]));
        }
        const auto exchanges = Words(exchangeText);
        for (std::size_t i = 0; i + 1 < exchanges.size(); i += 2)
            EXPECT_EQ(Exchange(controller, exchanges[i] + "\r"), exchanges[i + 1]) << "exchange " << i / 2;
    }
}

// Opens return the queued handles, then 1; every call is logged in order.
TEST(ScriptedController, OpensReturnTheQueuedHandlesAndEveryCallIsLogged)
{
    ScriptedController controller;
    controller.queueOpenResults({0, 5});
    controller.queueOpenResults({-3});
    std::array<char, link::kAddressBufferSize> address{};
    std::copy_n("10.0.0.7", 8, address.begin());
    for (int i = 0; i < 4; ++i)
        controller.open(2, i, address.data());
    std::array<char, link::kReceiveBufferSize> reply{};
    controller.failAny(1);
    controller.sendRecv(2, 1, "X1000\r", reply.data());
    controller.close(2, 1);
    controller.open(3, 0, address.data());
    std::vector<std::string> log;
    for (const ComCall& c : controller.calls())
        log.push_back(std::to_string(static_cast<int>(c.operation)) + " " + std::to_string(c.kind) + " "
                      + std::to_string(c.mode) + " " + std::to_string(c.handle) + " " + c.bytes + " "
                      + std::to_string(c.result));
    // Operations: 0 open, 1 close, 2 exchange.
    EXPECT_EQ(log, (std::vector<std::string>{"0 2 0 0 10.0.0.7 0", "0 2 1 0 10.0.0.7 5", "0 2 2 0 10.0.0.7 -3",
                                             "0 2 3 0 10.0.0.7 1", "2 2 0 1 X1000\r 0", "1 2 0 1  1",
                                             "0 3 0 0 10.0.0.7 1"}));
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
