#pragma once

#include "controller.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::sim::test {

constexpr std::int64_t Ms(std::int64_t milliseconds) { return milliseconds * 1000; }
constexpr std::int64_t Seconds(double s) { return static_cast<std::int64_t>(s * 1e6); }

// The reply text, or "<none>" when the controller stayed silent.
inline std::string Ask(Controller& controller, std::string_view command)
{
    return controller.execute(command).value_or("<none>");
}

// Field `number` (from 1) of the status record.
inline std::int64_t StatusField(Controller& controller, int number)
{
    std::string record = Ask(controller, "???");
    std::replace(record.begin(), record.end(), '.', ',');
    std::size_t start = 1;
    for (int field = 1; field < number; ++field)
        start = record.find(',', start) + 1;
    return std::stoll(record.substr(start, record.find(',', start) - start));
}

// One step of a conversation: a command and the reply it must get; a reply that ends in
// "*" stands for every reply that begins with the text before it ("?*": any refusal).
// A request "@T" moves the clock to T ms instead.
struct Step {
    std::string_view request;
    std::string_view reply = "OK";
};

struct Conversation {
    const char* name;
    std::vector<Step> steps;
};

inline void PrintTo(const Conversation& conversation, std::ostream* out) { *out << conversation.name; }

inline void Play(Controller& controller, const std::vector<Step>& steps)
{
    for (const Step& step : steps) {
        SCOPED_TRACE(step.request);
        if (step.request.starts_with('@')) {
            controller.advanceTo(Ms(std::stoll(std::string(step.request.substr(1)))));
            continue;
        }
        const std::string reply = Ask(controller, step.request);
        if (step.reply.ends_with('*'))
            EXPECT_TRUE(reply.starts_with(step.reply.substr(0, step.reply.size() - 1))) << reply;
        else
            EXPECT_EQ(reply, step.reply);
    }
}

// Each conversation is played on a fresh controller (the test is in commands_test.cpp).
class Converses : public ::testing::TestWithParam<Conversation> {};

inline std::string NameOf(const ::testing::TestParamInfo<Conversation>& info) { return info.param.name; }

} // namespace marlune::sim::test
