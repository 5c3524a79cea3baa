#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace marlune::headless {

struct Scenario;

struct RunTotals {
    int passed = 0;
    int failed = 0;
};

// Runs scenario files, each scenario from a fresh start, and reports every failure as
// `FILE:LINE: scenario "TITLE": ` followed by what was expected and what was found.
class ScenarioRunner final {
public:
    explicit ScenarioRunner(std::ostream& out) : out_(out) {}

    // Instead of checking each scenario, sweeps it with one failed exchange at a time (see
    // SweepScenario); a scenario passes when no run broke a rule.
    void setFaultSweep(bool sweep) { faultSweep_ = sweep; }

    // A file, or a directory: every *.scn file in it, sorted by name.
    void runPath(const std::string& path);
    // The scenarios of one file's text; `fileName` is what the reports call it.
    void runText(const std::string& fileName, std::string_view text);

    const RunTotals& totals() const { return totals_; }
    // `N passed, N failed` alone on a line.
    void printTotals();

private:
    void runFile(const std::string& path);
    void report(const std::string& fileName, int line, const std::string& title, const std::string& message);
    void sweep(const std::string& fileName, const Scenario& scenario);

    std::ostream& out_;
    RunTotals totals_;
    bool faultSweep_ = false;
    int sweptRuns_ = 0;
};

} // namespace marlune::headless
