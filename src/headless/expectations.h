#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "headless/scenario_parser.h"
#include "headless/statement_kind.h"

namespace marlune::shell {
class Program;
}

namespace marlune::headless {

class HeadlessPlatform;
class ScriptedController;

// The `expect` statements. Message boxes, print jobs and library calls are checked oldest
// first; this object remembers how far each record has been checked.
class Expectations final {
public:
    Expectations(HeadlessPlatform& platform, ScriptedController& controller)
        : platform_(platform), controller_(controller)
    {}

    // What is wrong with the words of an `expect` statement, before anything runs.
    static std::optional<std::string> argumentError(const Statement& statement);

    // Fails the scenario unless the expectation holds. `program` is null before `start`.
    void check(const Statement& statement, shell::Program* program);

private:
    void message(const Statement& statement);
    void noMessage(const Statement& statement);
    void sent(const Statement& statement);
    void sentRaw(const Statement& statement);
    void nothingSent(const Statement& statement);
    void openOrClose(const Statement& statement);
    void linkIdle(const Statement& statement);
    void property(const Statement& statement);
    void shown(const Statement& statement);
    void state(const Statement& statement);
    void file(const Statement& statement);
    void setting(const Statement& statement);
    void printed(const Statement& statement);
    void help(const Statement& statement);
    void arrangement(const Statement& statement);
    void active(const Statement& statement);

    // Arguments after `expect KIND`. A first word that is none of these names a form or control.
    static const StatementKind<Expectations> kKinds[];

    // The index of the oldest exchange (or open and close) not yet checked, or the log's size.
    std::size_t nextExchange() const;
    std::size_t nextOpenOrClose() const;
    std::string uncheckedCalls(bool exchanges, bool opensAndCloses) const;

    HeadlessPlatform& platform_;
    ScriptedController& controller_;
    std::size_t messagesChecked_ = 0;
    std::size_t printedChecked_ = 0;
    std::size_t exchangeCursor_ = 0;
    std::size_t openCloseCursor_ = 0;
    shell::Program* program_ = nullptr; // of the expectation being checked
};

} // namespace marlune::headless
