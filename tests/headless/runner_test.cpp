#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/fault_sweep.h"
#include "headless/scenario_runner.h"

namespace marlune::headless {
namespace {

// What a row sets up before its last statement.
constexpr const char* kTerminal = "start\nmenu mnuToolsTerminal\n";
constexpr const char* kSentX1 =
        "start\nmenu mnuToolsTerminal\nexpect open 1 1 \"\"\ntype Terminal.CommandLine \"X 1\"\n"
        "key Terminal.CommandLine Enter\n";
constexpr const char* kRefused = "start\nmenu mnuToolsmnuControl\ntype MainControl.ManualCmd open\n"
                                 "key MainControl.ManualCmd Enter\n";
constexpr const char* kExited = "start\nclose frmMain\n";

// A scenario whose last statement must fail, and what its report must hold.
struct FailureRow {
    const char* setup;
    const char* statement;
    const char* report;
};

constexpr FailureRow kFailures[] = {
        {kRefused, "expect message \"Cannot open\"", "expected: \"Cannot open\"\n  found:    \"Cannot open program\""},
        {kRefused, "expect message \"Cannot open program\" title \"Desk\"", "title \"Marlune Desk\"\n"},
        {kRefused, "expect message \"Cannot open program\" buttons YesNo", "buttons OK\n"},
        {kRefused, "expect message \"Cannot open program\" icon critical", "icon none\n"},
        {kRefused, "expect message \"Cannot open program\" size 2", "title, buttons and icon, not size"},
        {"", "expect message \"Cannot open program\"", "found:    no message box\n"},
        {kRefused, "expect no-message", "found:    message boxes \"Cannot open program\"\n"},
        {kSentX1, "expect sent \"X2\"", "expect sent\n  expected: \"X2\"\n  found:    \"X1\"\n"},
        {kTerminal, "expect sent \"X1\"", "found:    nothing sent\n"},
        {kSentX1, "expect sent-raw \"X1\"", "expected: \"X1\"\n  found:    \"X1\\r\"\n"},
        {kTerminal, "expect sent-raw \"X1\\r\"", "found:    nothing sent\n"},
        {kSentX1, "expect nothing-sent", "expect nothing-sent\n  expected: nothing sent\n  found:    sent \"X1\\r\"\n"},
        {kTerminal, "expect open 2 1 \"\"", "expected: open 2 1 \"\"\n  found:    open 1 1 \"\"\n"},
        {"", "expect open 1 1 \"\"", "found:    no open or close\n"},
        {kTerminal, "expect close 1 1", "expected: close 1 1\n  found:    open 1 1 \"\"\n"},
        {kTerminal, "expect link-idle", "found:    open 1 1 \"\"\n"},
        {kSentX1, "expect link-idle", "found:    sent \"X1\\r\"\n"},
        {kTerminal, "expect Terminal.CommandLine text \"X\"", "expected: \"X\"\n  found:    \"\"\n"},
        {kTerminal, "expect Terminal.CommandLine colour red", "Terminal.CommandLine has no property colour"},
        {kTerminal, "expect Terminal caption \"x\"", "found:    \"Marlune Terminal\"\n"},
        {"start\n", "expect Terminal loaded true", "expected: \"true\"\n  found:    \"false\"\n"},
        {"start\n", "expect frmMain text x", "a form has the properties caption and loaded, not text"},
        {"start\n", "expect frmMain.Nothing text x", "the form frmMain has no control Nothing"},
        {"start\n", "expect shown Terminal", "expect shown Terminal\n  expected: shown\n  found:    not shown\n"},
        {"start\n", "expect not-shown frmMain", "expected: not shown\n  found:    shown\n"},
        {"start\n", "expect state ControllerLink.linkKind 2", "expected: \"2\"\n  found:    \"1\"\n"},
        {"", "expect state Nobody.knows 1", "unknown state Nobody.knows"},
        {"file a.txt \"1\\r\"\n", "expect file a.txt \"2\\r\"", "expected: \"2\\r\"\n  found:    \"1\\r\"\n"},
        {"", "expect file a.txt \"\"", "found:    no file\n"},
        {"file a.txt x\n", "expect no-file a.txt", "expected: no file\n  found:    \"x\"\n"},
        {kExited, "expect setting Settings MainLeft 1", "expected: \"1\"\n  found:    \"0\"\n"},
        {"", "expect setting Settings MainLeft 0", "found:    no setting\n"},
        {kExited, "expect no-setting Settings MainLeft", "expected: no setting\n  found:    \"0\"\n"},
        {"", "expect printed \"x\"", "found:    nothing printed\n"},
        {"", "expect help \"x\" 1", "found:    no call of the help viewer\n"},
        {"", "expect arrangement 0", "found:    no arrangement\n"},
        {"start\nmenu mnuWindowCascade\n", "expect arrangement 3", "expected: 3\n  found:    0\n"},
        {"start\n", "expect active frmMain", "found:    no active child\n"},
        {"start\n", "expect active Nobody", "expected: Nobody\n  found:    no active child\n"},
        {"start\nmenu mnuToolsTerminal\ntype Terminal.CommandLine store\n", "key Terminal.CommandLine Enter",
         "a question came up with no answer queued: \"Store the Programs and Variables from Memory to EEPROM?\""},
        {kTerminal, "menu mnuToolsTerminal", "frmMain takes no input while Terminal is shown modally"},
        {kTerminal, "wait-closed Terminal 1s", "Terminal is still shown after 1000ms"},
        {"", "expect sent", "expect sent takes 1 or more words, not 0"},
        {"start\n", "fly to the moon", "unknown statement \"fly\""},
};

std::string RunText(const std::string& text, RunTotals& totals, bool faultSweep = false)
{
    std::ostringstream out;
    ScenarioRunner runner(out);
    runner.setFaultSweep(faultSweep);
    runner.runText("check.scn", text);
    runner.printTotals();
    totals = runner.totals();
    return out.str();
}

// Each row fails at its last line, with a report that holds the row's text; the next row runs.
TEST(ScenarioRunner, EveryWrongExpectationOrStatementFailsAtItsLineWithBothSides)
{
    std::string text;
    std::vector<std::string> heads;
    for (std::size_t i = 0; i < std::size(kFailures); ++i) {
        text += "scenario \"" + std::to_string(i) + "\"\n" + kFailures[i].setup + kFailures[i].statement + "\n";
        const auto line = std::count(text.begin(), text.end(), '\n');
        heads.push_back("check.scn:" + std::to_string(line) + ": scenario \"" + std::to_string(i) + "\": ");
    }
    RunTotals totals;
    const std::string out = RunText(text, totals);
    for (std::size_t i = 0; i < std::size(kFailures); ++i) {
        const std::size_t at = out.find(heads[i]);
        ASSERT_NE(at, std::string::npos) << heads[i] << "\nin:\n" << out;
        const std::string report = out.substr(at, std::min(out.find("\ncheck.scn:", at), out.size() - 1) + 1 - at);
        EXPECT_NE(report.find(kFailures[i].report), std::string::npos) << kFailures[i].report << "\nin:\n" << report;
    }
    EXPECT_EQ(totals.passed, 0);
    EXPECT_TRUE(out.ends_with("\n0 passed, " + std::to_string(std::size(kFailures)) + " failed\n")) << out;
}

// A syntax error fails only the scenario it stands in; a file without scenarios fails.
TEST(ScenarioRunner, ASyntaxErrorFailsOnlyItsScenario)
{
    RunTotals totals;
    const std::string out = RunText(
            "scenario \"bad\"\nrepeat 2\nstart\nscenario \"good\"\nfile a.txt x\nexpect file a.txt x\n", totals);
    EXPECT_EQ(out, "check.scn:2: scenario \"bad\": syntax error: repeat without end-repeat\n1 passed, 1 failed\n");
    RunText("# nothing\n", totals);
    EXPECT_EQ(totals.failed, 1);
}

// A scenario swept with one failed exchange at a time, and what the sweep's report must hold.
struct SweepRow {
    const char* scenario;
    const char* report;
};

constexpr SweepRow kSweeps[] = {
        // Every failure of the terminal's two exchanges is told once and the link is closed; an
        // expectation that the faults make wrong is not checked.
        {"start\nmenu mnuToolsTerminal\nexpect message nothing\ntype Terminal.CommandLine X1\n"
         "key Terminal.CommandLine Enter\nclick Terminal.CloseTerminal\n",
         "fault sweep: 2 runs\n1 passed, 0 failed\n"},
        // The panel closes its link when it goes, also after it lost the link at a poll.
        {"start\nmenu mnuToolsmnuControl\nwait 500ms\n", "fault sweep: 6 runs\n1 passed, 0 failed\n"},
        {"file a.tmp-marlune x\n", "without a fault: half-written file a.tmp-marlune\n"},
};

void PrintTo(const SweepRow& row, std::ostream* out) { *out << row.scenario; }

class FaultSweep : public ::testing::TestWithParam<SweepRow> {};

TEST_P(FaultSweep, ChecksOnlyWhatMustHoldWhateverFails)
{
    RunTotals totals;
    const std::string out = RunText(std::string("scenario \"s\"\n") + GetParam().scenario, totals, true);
    EXPECT_NE(out.find(GetParam().report), std::string::npos) << out;
}

INSTANTIATE_TEST_SUITE_P(Runner, FaultSweep, ::testing::ValuesIn(kSweeps));

TEST(FaultSweep, AFailedExchangeBelongsToTheInnermostStatementThatHoldsIt)
{
    // A statement over exchanges 1 to 4 that showed one message itself, and one inside it
    // (a click within a modal showing it opened) over exchanges 3 and 4 that showed two.
    const std::vector<StatementSpan> spans = {{2, 4, 2}, {0, 4, 1}, {4, 6, 0}};
    for (const auto& [exchange, messages] :
         std::vector<std::pair<int, int>>{{1, 1}, {2, 1}, {3, 2}, {4, 2}, {5, 0}, {7, 0}})
        EXPECT_EQ(MessagesAroundExchange(spans, exchange), messages) << "exchange " << exchange;
}

} // namespace
} // namespace marlune::headless
