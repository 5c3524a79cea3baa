#pragma once

#include "controller.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::sim::test {

constexpr std::int64_t ms(std::int64_t milliseconds) { return milliseconds * 1000; }
constexpr std::int64_t seconds(double s) { return static_cast<std::int64_t>(s * 1e6); }

// The reply text, or "<none>" when the controller stayed silent.
inline std::string ask(Controller& controller, std::string_view command)
{
    return controller.execute(command).value_or("<none>");
}

// Downloads a program the way the transfer dialog does.
inline void download(Controller& controller, int program, std::initializer_list<std::string_view> lines)
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
inline std::vector<std::string> statusFields(const std::string& record, std::string* terminators = nullptr)
{
    std::vector<std::string> fields;
    std::string field;
    for (std::size_t i = 1; i < record.size(); ++i) {
        const char ch = record[i];
        if (ch == ',' || ch == '.') {
            fields.push_back(field);
            field.clear();
            if (terminators)
                terminators->push_back(ch);
        } else {
            field.push_back(ch);
        }
    }
    return fields;
}

inline std::int64_t statusField(Controller& controller, int number)
{
    return std::stoll(statusFields(ask(controller, "???")).at(static_cast<std::size_t>(number - 1)));
}

} // namespace marlune::sim::test
