#include "headless/fault_sweep.h"

#include "forms/form.h"
#include "headless/headless_platform.h"
#include "headless/quoted_text.h"
#include "headless/scenario_session.h"
#include "headless/scripted_controller.h"
#include "shell/program.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <set>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <variant>

namespace marlune::headless {

namespace {

// The suffix of the temporary file that an atomic write renames into place.
constexpr std::string_view kHalfWrittenSuffix = ".tmp-marlune";

// Children first: a window's unload may still need its owner.
constexpr const char* kWindowsToClose[] = {
        "frmAbout",         "DevSerListSel",     "ComSetup", "SetupEncoderControl", "SetupJoystick", "Setup",
        "frmCompareMemory", "ProgramViewer",     "Status",   "MonitorAI",           "NewPos",        "Terminal",
        "MainControl",      "frmProjectManager", "frmMain"};

// What one run tells the sweep, as the child process writes it to its pipe.
struct RunReport {
    int exchanges = 0;
    std::vector<StatementSpan> spans;
    std::vector<std::string> messages;
    std::vector<std::string> leftovers;
};

RunReport RunOnce(const Scenario& scenario, int fault)
{
    ScenarioSession session;
    session.sweepWithFault(fault);
    session.run(scenario);
    RunReport report;
    try {
        report.leftovers = session.endAndFindLeftovers();
    } catch (const std::exception& error) {
        report.leftovers.push_back(std::string("the program could not be ended: ") + error.what());
    }
    report.exchanges = session.exchanges();
    report.spans = session.spans();
    report.messages = session.messages();
    return report;
}

// The exchange count, then each span as "s" and three numbers, each message and each leftover
// as a quoted line of its own.
std::string Encode(const RunReport& report)
{
    std::string text = std::to_string(report.exchanges) + '\n';
    for (const StatementSpan& span : report.spans)
        text += "s " + std::to_string(span.exchangesBefore) + ' ' + std::to_string(span.exchangesAfter) + ' '
                + std::to_string(span.ownMessages) + '\n';
    for (const std::string& message : report.messages)
        text += "m" + Quoted(message) + '\n';
    for (const std::string& leftover : report.leftovers)
        text += "l" + Quoted(leftover) + '\n';
    return text;
}

RunReport Decode(const std::string& text)
{
    std::istringstream in(text);
    RunReport report;
    std::string line;
    if (std::getline(in, line))
        report.exchanges = std::stoi(line);
    while (std::getline(in, line)) {
        if (line.starts_with("s ")) {
            StatementSpan span;
            std::istringstream(line.substr(2)) >> span.exchangesBefore >> span.exchangesAfter >> span.ownMessages;
            report.spans.push_back(span);
            continue;
        }
        std::string error;
        const auto value =
                line.size() >= 3 ? Unescape(std::string_view(line).substr(2, line.size() - 3), error) : std::nullopt;
        if (value)
            (line[0] == 'm' ? report.messages : report.leftovers).push_back(*value);
    }
    return report;
}

std::string Listed(const std::vector<std::string>& texts)
{
    std::string list;
    for (const std::string& text : texts)
        list += (list.empty() ? "" : ", ") + Quoted(text);
    return list;
}

// The report of a run in a child process, or why there is none.
std::variant<RunReport, std::string> RunInChild(const Scenario& scenario, int fault)
{
    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0)
        return std::string("no pipe: ") + std::strerror(errno);
    std::cout.flush();
    const pid_t child = ::fork();
    if (child < 0)
        return std::string("no child process: ") + std::strerror(errno);
    if (child == 0) {
        ::close(pipeEnds[0]);
        const std::string text = Encode(RunOnce(scenario, fault));
        for (std::size_t at = 0; at < text.size();) {
            const ssize_t written = ::write(pipeEnds[1], text.data() + at, text.size() - at);
            if (written <= 0)
                ::_exit(3);
            at += static_cast<std::size_t>(written);
        }
        ::_exit(0);
    }
    ::close(pipeEnds[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t got; (got = ::read(pipeEnds[0], buffer, sizeof buffer)) != 0;) {
        if (got > 0)
            text.append(buffer, static_cast<std::size_t>(got));
        else if (errno != EINTR)
            break;
    }
    ::close(pipeEnds[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status))
        return std::string("crashed with signal ") + std::to_string(WTERMSIG(status)) + " ("
               + ::strsignal(WTERMSIG(status)) + ")";
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return std::string("the run ended with status ") + std::to_string(WEXITSTATUS(status));
    return Decode(text);
}

} // namespace

int MessagesAroundExchange(const std::vector<StatementSpan>& spans, int exchange)
{
    const StatementSpan* innermost = nullptr;
    for (const StatementSpan& span : spans) {
        if (span.exchangesBefore < exchange && exchange <= span.exchangesAfter
            && (!innermost
                || span.exchangesAfter - span.exchangesBefore < innermost->exchangesAfter - innermost->exchangesBefore))
            innermost = &span;
    }
    return innermost ? innermost->ownMessages : 0;
}

void EndProgram(shell::Program& program, HeadlessPlatform& platform)
{
    for (int i = 0; i < 8; ++i)
        platform.queueAnswer(forms::MessageAnswer::No);
    for (const char* name : kWindowsToClose) {
        if (forms::Form* form = program.findForm(name); form && form->loaded())
            form->unload();
    }
}

std::vector<std::string> FindLeftovers(const std::vector<ComCall>& calls, const std::filesystem::path& directory)
{
    std::vector<std::string> leftovers;
    std::multiset<std::pair<std::int32_t, std::int32_t>> open; // kind and handle
    for (const ComCall& call : calls) {
        if (call.operation == ComCall::Operation::Open && call.result > 0)
            open.insert({call.kind, call.result});
        else if (call.operation == ComCall::Operation::Close)
            if (const auto found = open.find({call.kind, call.handle}); found != open.end())
                open.erase(found);
    }
    for (const auto& [kind, handle] : open)
        leftovers.push_back("the link of kind " + std::to_string(kind) + ", handle " + std::to_string(handle)
                            + " was opened and never closed");
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory, error)) {
        if (entry.path().filename().string().ends_with(kHalfWrittenSuffix))
            leftovers.push_back("half-written file " + std::filesystem::relative(entry.path(), directory).string());
    }
    return leftovers;
}

SweepResult SweepScenario(const Scenario& scenario)
{
    SweepResult result;
    const auto clean = RunInChild(scenario, 0);
    if (const auto* why = std::get_if<std::string>(&clean)) {
        result.findings.push_back({0, *why});
        return result;
    }
    const RunReport& base = std::get<RunReport>(clean);
    result.exchanges = base.exchanges;
    for (const std::string& leftover : base.leftovers)
        result.findings.push_back({0, leftover});
    for (int fault = 1; fault <= base.exchanges; ++fault) {
        const auto run = RunInChild(scenario, fault);
        if (const auto* why = std::get_if<std::string>(&run)) {
            result.findings.push_back({fault, *why});
            continue;
        }
        const RunReport& report = std::get<RunReport>(run);
        for (const std::string& leftover : report.leftovers)
            result.findings.push_back({fault, leftover});
        const int shown = MessagesAroundExchange(report.spans, fault);
        const int before = MessagesAroundExchange(base.spans, fault);
        if (shown > before + 1)
            result.findings.push_back(
                    {fault, std::to_string(shown) + " messages where the run without the fault showed "
                                    + std::to_string(before)
                                    + ", more than one for one failed exchange: " + Listed(report.messages)});
    }
    return result;
}

} // namespace marlune::headless
