#include "headless/scenario_runner.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "forms/files.h"
#include "headless/fault_sweep.h"
#include "headless/quoted_text.h"
#include "headless/scenario_parser.h"
#include "headless/scenario_session.h"

namespace marlune::headless {

void ScenarioRunner::runPath(const std::string& path)
{
    std::error_code error;
    if (!std::filesystem::is_directory(path, error)) {
        runFile(path);
        return;
    }
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        if (entry.is_regular_file() && entry.path().extension() == ".scn")
            files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    if (files.empty())
        report(path, 0, {}, "no .scn file in the directory");
    for (const std::string& file : files)
        runFile(file);
}

void ScenarioRunner::runFile(const std::string& path)
{
    const auto text = forms::ReadFileBytes(path);
    if (!text) {
        report(path, 0, {}, "cannot read the file");
        return;
    }
    runText(path, *text);
}

void ScenarioRunner::runText(const std::string& fileName, std::string_view text)
{
    const ScenarioFile file = ParseScenarios(text);
    if (file.error)
        report(fileName, file.error->line, {}, "syntax error: " + file.error->message);
    for (const Scenario& scenario : file.scenarios) {
        if (scenario.error) {
            report(fileName, scenario.error->line, scenario.title, "syntax error: " + scenario.error->message);
            continue;
        }
        if (faultSweep_) {
            sweep(fileName, scenario);
            continue;
        }
        ScenarioOutcome outcome;
        try {
            ScenarioSession session;
            outcome = session.run(scenario);
        } catch (const std::exception& error) {
            outcome = {false, scenario.line, std::string("the scenario could not run: ") + error.what()};
        }
        if (outcome.passed)
            ++totals_.passed;
        else
            report(fileName, outcome.line, scenario.title, outcome.message);
    }
}

void ScenarioRunner::sweep(const std::string& fileName, const Scenario& scenario)
{
    const SweepResult result = SweepScenario(scenario);
    sweptRuns_ += result.exchanges + 1;
    for (const SweepFinding& finding : result.findings) {
        report(fileName, scenario.line, scenario.title,
               (finding.exchange == 0 ? std::string("without a fault: ")
                                      : "exchange " + std::to_string(finding.exchange) + " of "
                                                + std::to_string(result.exchanges) + " failing: ")
                       + finding.message);
    }
    if (result.findings.empty())
        ++totals_.passed;
}

void ScenarioRunner::report(const std::string& fileName, int line, const std::string& title, const std::string& message)
{
    ++totals_.failed;
    out_ << fileName;
    if (line > 0)
        out_ << ':' << line;
    out_ << ": ";
    if (!title.empty())
        out_ << "scenario " << Quoted(title) << ": ";
    out_ << message << '\n';
}

void ScenarioRunner::printTotals()
{
    if (faultSweep_)
        out_ << "fault sweep: " << sweptRuns_ << " runs\n";
    out_ << totals_.passed << " passed, " << totals_.failed << " failed\n";
}

} // namespace marlune::headless
