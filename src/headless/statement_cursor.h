#pragma once

#include <cstddef>
#include <vector>

#include "headless/scenario_parser.h"

namespace marlune::headless {

// Reads a scenario's statements one at a time, unrolling repeats. One cursor serves every
// level of modal nesting, so that a level goes on where the inner one stopped reading.
class StatementCursor final {
public:
    explicit StatementCursor(const std::vector<Statement>& statements);
    // The next statement, or null at the end.
    const Statement* next();

private:
    struct Level {
        const std::vector<Statement>* statements;
        std::size_t index;
        int roundsLeft;
    };
    std::vector<Level> levels_;
};

} // namespace marlune::headless
