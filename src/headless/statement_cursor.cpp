#include "headless/statement_cursor.h"

namespace marlune::headless {

StatementCursor::StatementCursor(const std::vector<Statement>& statements) : levels_{{&statements, 0, 0}} {}

const Statement* StatementCursor::next()
{
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.index < level.statements->size()) {
            const Statement& statement = (*level.statements)[level.index++];
            if (!statement.isRepeat())
                return &statement;
            if (statement.repeatCount > 0 && !statement.body.empty())
                levels_.push_back({&statement.body, 0, statement.repeatCount - 1});
        } else if (level.roundsLeft > 0) {
            --level.roundsLeft;
            level.index = 0;
        } else {
            levels_.pop_back();
        }
    }
    return nullptr;
}

} // namespace marlune::headless
