#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "headless/scenario_lexer.h"

namespace marlune::headless {

struct Statement;

// No upper bound on the words of a statement.
inline constexpr std::size_t kMany = 1000000;

// One row of a dispatch table: the name, how many words follow it, and the member that runs it.
// Statements and expectations are both dispatched through such a table.
template <typename Runner>
struct StatementKind {
    std::string_view name;
    std::size_t minArgs;
    std::size_t maxArgs;
    void (Runner::*run)(const Statement&);
};

// The row that `word` names; a quoted word names none.
template <typename Runner, std::size_t N>
const StatementKind<Runner>* FindStatementKind(const StatementKind<Runner> (&table)[N], const Word& word)
{
    if (word.quoted)
        return nullptr;
    for (const StatementKind<Runner>& kind : table) {
        if (kind.name == word.text)
            return &kind;
    }
    return nullptr;
}

// "`what` takes 1 to 7 words, not 9", or nothing when `args` lies within the bounds.
std::optional<std::string> WordCountError(const std::string& what, std::size_t minArgs, std::size_t maxArgs,
                                          std::size_t args);

} // namespace marlune::headless
