#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/scenario_lexer.h"

namespace marlune::headless {

// One statement; a `repeat N` holds the statements up to its `end-repeat`.
struct Statement {
    int line = 0;
    std::vector<Word> words; // words[0] names the statement
    int repeatCount = 0;
    std::vector<Statement> body;

    bool isRepeat() const { return !words.empty() && words[0].text == "repeat" && !words[0].quoted; }
    const std::string& name() const { return words[0].text; }
};

struct ParseError {
    int line = 0;
    std::string message;
};

struct Scenario {
    std::string title;
    int line = 0;
    std::vector<Statement> statements;
    // The first syntax error inside the scenario; the scenario then fails without running.
    std::optional<ParseError> error;
};

struct ScenarioFile {
    std::vector<Scenario> scenarios;
    // An error outside every scenario (or a file without one).
    std::optional<ParseError> error;
};

// Lines end in LF or CR LF. A syntax error spoils only the scenario it stands in.
ScenarioFile ParseScenarios(std::string_view text);

} // namespace marlune::headless
