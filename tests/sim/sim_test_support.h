#pragma once

#include "controller.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
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

// Downloads a program the way the transfer dialog does.
inline void Download(Controller& controller, int program, std::initializer_list<std::string_view> lines)
{
    controller.execute("CLOSE");
    controller.execute("OPENPROG" + std::to_string(program));
    controller.execute("CLEAR");
    for (const std::string_view line : lines)
        controller.execute(line);
    controller.execute("CLOSE");
}

// The 28 fields of a status record, without their terminators; `terminators`
// gets the character that ended each.
inline std::vector<std::string> StatusFields(const std::string& record, std::string* terminators = nullptr)
{
    std::vector<std::string> fields(1);
    for (std::size_t i = 1; i < record.size(); ++i) {
        if (record[i] != ',' && record[i] != '.') {
            fields.back().push_back(record[i]);
            continue;
        }
        fields.emplace_back();
        if (terminators)
            terminators->push_back(record[i]);
    }
    fields.pop_back();
    return fields;
}

inline std::int64_t StatusField(Controller& controller, int number)
{
    return std::stoll(StatusFields(Ask(controller, "???")).at(static_cast<std::size_t>(number - 1)));
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

// Each conversation is played on a fresh controller (the test is in command_errors_test.cpp).
class Converses : public ::testing::TestWithParam<Conversation> {};

inline std::string NameOf(const ::testing::TestParamInfo<Conversation>& info) { return info.param.name; }

} // namespace marlune::sim::test
