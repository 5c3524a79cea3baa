#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "headless/scenario_parser.h"

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
    void noMessage();
    void sent(const Statement& statement);
    void sentRaw(const Statement& statement);
    void nothingSent();
    void openOrClose(const Statement& statement);
    void linkIdle();
    void property(const Statement& statement, shell::Program* program);
    void shown(const Statement& statement, shell::Program* program, bool expected);
    void state(const Statement& statement, shell::Program* program);
    void file(const Statement& statement, bool expected);
    void setting(const Statement& statement, bool expected);
    void printed(const Statement& statement);
    void help(const Statement& statement);
    void arrangement(const Statement& statement);
    void active(const Statement& statement, shell::Program* program);

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
};

} // namespace marlune::headless
