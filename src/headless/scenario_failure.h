#pragma once

#include <stdexcept>
#include <string>

namespace marlune::headless {

// A statement found something other than what the scenario said; the scenario stops there.
class ScenarioFailure final : public std::runtime_error {
public:
    // `line` 0 blames the statement that is running.
    explicit ScenarioFailure(const std::string& message, int line = 0) : std::runtime_error(message), line_(line) {}
    int line() const { return line_; }

private:
    int line_;
};

[[noreturn]] void Fail(const std::string& message);

// `what` was checked; both sides as the scenario language writes them.
[[noreturn]] void FailMismatch(const std::string& what, const std::string& expected, const std::string& found);

} // namespace marlune::headless
