#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace marlune::shell {
class Program;
}

namespace marlune::headless {

class HeadlessPlatform;
struct ComCall;
struct Scenario;

// What one statement (or the end of the program) did: the exchanges of the run it spans, and
// the messages it showed itself, not counting those of the statements run inside it (within a
// modal showing it opened). A failed exchange k belongs to the innermost span that holds it.
struct StatementSpan {
    int exchangesBefore = 0;
    int exchangesAfter = 0;
    int ownMessages = 0;
};

// The own messages of the innermost span that holds exchange k; 0 when none holds it.
int MessagesAroundExchange(const std::vector<StatementSpan>& spans, int exchange);

// Closes every window of the program as an operator ending it would, the frame last, each
// question answered No.
void EndProgram(shell::Program& program, HeadlessPlatform& platform);

// What a finished run must not leave behind: links opened and never closed, and files half
// written (a temporary file of an atomic write) anywhere under `directory`.
std::vector<std::string> FindLeftovers(const std::vector<ComCall>& calls, const std::filesystem::path& directory);

// A broken rule of one run; exchange 0 is the run without a fault.
struct SweepFinding {
    int exchange = 0;
    std::string message;
};

struct SweepResult {
    int exchanges = 0; // of the run without a fault
    std::vector<SweepFinding> findings;
};

// Runs the scenario once to count its exchanges n, then n more times with exchange k failing,
// and checks only what must hold whatever fails: no crash, every link opened is closed by the
// end, no half-written file, and at most one message more than without the fault during the
// statement whose exchange failed. Each run is a child process, so that a crash is named and
// the sweep goes on.
SweepResult SweepScenario(const Scenario& scenario);

} // namespace marlune::headless
