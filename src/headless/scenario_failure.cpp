#include "headless/scenario_failure.h"

namespace marlune::headless {

void Fail(const std::string& message) { throw ScenarioFailure(message); }

void FailMismatch(const std::string& what, const std::string& expected, const std::string& found)
{
    throw ScenarioFailure(what + "\n  expected: " + expected + "\n  found:    " + found);
}

} // namespace marlune::headless
