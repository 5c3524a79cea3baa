#pragma once

#include "command.h"
#include "expression.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marlune::sim {

enum class ProgramState { Idle = 0, Running = 1, Errored = 2, Paused = 3, Warning = 4 };

// What a running program may do to the controller it runs in.
class Machine : public ValueSource {
public:
    // Carries out a command; an empty text when done, else why not.
    virtual std::string perform(const Command& command) = 0;
    // When all axes of the mask (bit 0 X … bit 3 U) will have come to rest.
    virtual std::int64_t idleAt(unsigned axisMask) const = 0;
};

// One line of a program, compiled.
struct Statement {
    enum class Kind { Perform, SetValue, While, EndWhile, If, Else, EndIf, End, Delay, Wait };
    Kind kind = Kind::Perform;
    int line = 0;    // line number from 1
    Command command; // Perform, SetValue (its value comes from the expression)
    Expression expression = Expression::constant(0);
    std::size_t jump = 0;  // While, EndWhile, If, Else: where control goes
    unsigned axisMask = 0; // Wait
};

// Compiles program lines; on failure says which line and why.
bool CompileProgram(const std::vector<std::string>& lines, std::vector<Statement>& code, int& errorLine,
                    std::string& error);

// Runs one program slot: one statement per step, a step every millisecond of
// clock time, waits and delays in between.
class ProgramRunner final {
public:
    static constexpr std::int64_t kStepMicros = 1000;

    // Compiles and starts; says why not when the text does not compile.
    std::string start(const std::vector<std::string>& lines, int program, std::int64_t now);
    void quit();
    void pause();
    void resume(std::int64_t now);
    void clearError();

    ProgramState state() const { return state_; }
    bool active() const { return state_ == ProgramState::Running || state_ == ProgramState::Warning; }
    int currentLine() const { return currentLine_; }
    const std::string& message() const { return message_; }
    std::optional<std::int64_t> nextStep() const;

    // Runs the statement that is due at `now`.
    void step(Machine& machine, std::int64_t now);

private:
    void finish();
    void fail(const Statement& statement, const std::string& why, ProgramState state);
    bool evaluate(Machine& machine, const Statement& statement, std::int64_t& value);

    std::vector<Statement> code_;
    std::size_t pc_ = 0;
    ProgramState state_ = ProgramState::Idle;
    int currentLine_ = 0;
    std::int64_t nextStepAt_ = 0;
    std::string message_;
};

} // namespace marlune::sim
