#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "headless/scenario_runner.h"

namespace marlune::headless {
namespace {

// Every expectation here is wrong, or the statement cannot be done; each scenario fails once.
constexpr const char* kWrong = R"(scenario "the wrong command"
reply "X1" "OK"
start
menu mnuToolsTerminal
type Terminal.CommandLine "X 1"
key Terminal.CommandLine Enter
expect sent "X2"

scenario "the wrong bytes"
file "a.txt" "one\r\n"
expect file a.txt "two\r\n"

scenario "a question nobody answers"
start
menu mnuToolsTerminal
type Terminal.CommandLine "store"
key Terminal.CommandLine Enter
expect no-message

scenario "the frame takes no input behind the terminal"
start
menu mnuToolsTerminal
menu mnuToolsTerminal

scenario "a state the program does not have"
expect state Nobody.knows 1

scenario "an unknown statement"
start
fly to the moon
)";

// The same kind of checks, right.
constexpr const char* kRight = R"(scenario "files are bytes in the working directory"
expect no-file a.txt
file a.txt "one\r\n\x04"
expect file a.txt "one\r\n\x04"
remove a.txt
expect no-file a.txt
file marlunecom.ini " 3 \r\n10.0.0.9\r\nCOM7\r\n"
start
expect state ControllerLink.linkKind 3
expect state ControllerLink.linkAddress COM7

scenario "the next scenario starts afresh"
expect no-file marlunecom.ini
start
expect state ControllerLink.linkKind 1
close frmMain
expect not-shown frmMain
expect setting Settings MainLeft "0"

scenario "repeats and the statements read inside a modal showing"
reply * "OK"
start
menu mnuToolsTerminal
repeat 2
  repeat 2
    type Terminal.CommandLine "A"
    key Terminal.CommandLine Enter
  end-repeat
end-repeat
expect sent A A A A
expect nothing-sent
wait 1s
type Terminal.CommandLine "exit"
key Terminal.CommandLine Enter
expect not-shown Terminal
expect open 1 1 ""
expect close 1 1
expect link-idle

scenario "a scenario may end while a form is shown modally"
start
menu mnuToolsTerminal
wait 2s
expect shown Terminal
)";

std::string RunText(const char* text, RunTotals& totals)
{
    std::ostringstream out;
    ScenarioRunner runner(out);
    runner.runText("check.scn", text);
    runner.printTotals();
    totals = runner.totals();
    return out.str();
}

TEST(ScenarioRunner, ReportsEveryWrongExpectationWithFileLineAndBothSides)
{
    RunTotals totals;
    const std::string out = RunText(kWrong, totals);
    EXPECT_EQ(totals.passed, 0);
    EXPECT_EQ(totals.failed, 6);
    for (const char* expected : {
                 "check.scn:7: scenario \"the wrong command\": expect sent\n  expected: \"X2\"\n  found:    \"X1\"\n",
                 "check.scn:11: scenario \"the wrong bytes\": expect file a.txt\n  expected: \"two\\r\\n\"\n"
                 "  found:    \"one\\r\\n\"\n",
                 "check.scn:17: scenario \"a question nobody answers\": a question came up with no answer queued: "
                 "\"Store the Programs and Variables from Memory to EEPROM?\"\n",
                 "check.scn:23: scenario \"the frame takes no input behind the terminal\": frmMain takes no input "
                 "while "
                 "Terminal is shown modally\n",
                 "check.scn:26: scenario \"a state the program does not have\": unknown state Nobody.knows\n",
                 "check.scn:30: scenario \"an unknown statement\": unknown statement \"fly\"\n",
         }) {
        EXPECT_NE(out.find(expected), std::string::npos) << "missing:\n" << expected << "\nin:\n" << out;
    }
    EXPECT_TRUE(out.ends_with("\n0 passed, 6 failed\n")) << out;
}

TEST(ScenarioRunner, RightExpectationsPass)
{
    RunTotals totals;
    const std::string out = RunText(kRight, totals);
    EXPECT_EQ(out, "4 passed, 0 failed\n");
    EXPECT_EQ(totals.failed, 0);
}

TEST(ScenarioRunner, ASyntaxErrorFailsItsScenarioOnlyAndAFileWithoutScenariosFails)
{
    RunTotals totals;
    const std::string out = RunText("scenario \"bad\"\nrepeat 2\nstart\nscenario \"good\"\nstart\n", totals);
    EXPECT_EQ(out, "check.scn:2: scenario \"bad\": syntax error: repeat without end-repeat\n1 passed, 1 failed\n");
    RunText("# nothing\n", totals);
    EXPECT_EQ(totals.failed, 1);
}

// Runs the executable on `text` in a file of its own; its output and exit status.
std::pair<std::string, int> RunExecutable(const std::string& text)
{
    const auto dir = std::filesystem::temp_directory_path() / ("marlune-runner-test-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const auto file = dir / "case.scn";
    std::ofstream(file, std::ios::binary) << text;
    std::string output;
    FILE* pipe = ::popen((std::string(MARLUNE_SCENARIO_EXECUTABLE) + " " + dir.string()).c_str(), "r");
    char buffer[4096];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe))
        output += buffer;
    const int status = pipe ? ::pclose(pipe) : -1;
    std::filesystem::remove_all(dir);
    return {output, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

TEST(ScenarioRunner, TheExecutableExitsWithZeroOnlyWhenNoneFailed)
{
    const auto [wrongOut, wrongStatus] = RunExecutable(kWrong);
    EXPECT_EQ(wrongStatus, 1);
    EXPECT_NE(wrongOut.find("case.scn:7: scenario \"the wrong command\""), std::string::npos) << wrongOut;
    EXPECT_TRUE(wrongOut.ends_with("\n0 passed, 6 failed\n")) << wrongOut;

    const auto [rightOut, rightStatus] = RunExecutable(kRight);
    EXPECT_EQ(rightStatus, 0);
    EXPECT_EQ(rightOut, "4 passed, 0 failed\n");
}

} // namespace
} // namespace marlune::headless
