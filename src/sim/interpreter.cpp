#include "interpreter.h"

#include "command_parser.h"
#include "counts.h"

#include <algorithm>

namespace marlune::sim {

namespace {

constexpr std::int64_t kLongestDelayMs = 86'400'000; // one day

// Compiles one line that is not an empty one; false with `error` on failure.
bool CompileLine(std::string_view text, Statement& s, std::string& error)
{
    using Kind = Statement::Kind;
    struct Word {
        std::string_view text;
        Kind kind;
    };
    static constexpr Word kBare[] = {
            {"ENDWHILE", Kind::EndWhile}, {"ENDIF", Kind::EndIf}, {"ELSE", Kind::Else}, {"END", Kind::End}};
    for (const Word& word : kBare) {
        if (text == word.text) {
            s.kind = word.kind;
            return true;
        }
    }
    static constexpr Word kWithValue[] = {{"WHILE", Kind::While}, {"IF", Kind::If}, {"DELAY", Kind::Delay}};
    for (const Word& word : kWithValue) {
        if (!StartsWith(text, word.text))
            continue;
        std::string_view rest = text.substr(word.text.size());
        if (word.kind == Kind::Delay && StartsWith(rest, "="))
            rest.remove_prefix(1);
        if (rest.empty()) {
            error = std::string(word.text) + " needs " + (word.kind == Kind::Delay ? "a time in ms" : "a condition");
            return false;
        }
        auto expression = Expression::compile(rest, error);
        if (!expression)
            return false;
        s.kind = word.kind;
        s.expression = std::move(*expression);
        return true;
    }
    if (StartsWith(text, "WAIT")) {
        s.kind = Kind::Wait;
        for (const char letter : text.substr(4)) {
            const auto axis = AxisFromLetter(letter);
            if (!axis) {
                error = "WAIT takes axis letters X, Y, Z, U";
                return false;
            }
            s.axisMask |= 1u << AxisIndex(*axis);
        }
        if (s.axisMask == 0)
            s.axisMask = 0xF;
        return true;
    }
    // NAME=expression: the command NAME=value with the value worked out at run time.
    const auto equals = text.find('=');
    std::string_view valueText;
    std::string commandText(text);
    if (equals != std::string_view::npos && equals + 1 < text.size()) {
        Command probe;
        std::string ignored;
        const std::string constant = std::string(text.substr(0, equals)) + "=0";
        if (ParseCommand(constant, probe, ignored) && RuleOf(probe.op).inProgram && probe.op != Op::Move) {
            valueText = text.substr(equals + 1);
            commandText = constant;
        }
    }
    if (!ParseCommand(commandText, s.command, error))
        return false;
    if (!RuleOf(s.command.op).inProgram) {
        error = "\"" + std::string(text) + "\" cannot be used in a program";
        return false;
    }
    s.kind = Kind::Perform;
    if (valueText.empty())
        return true;
    auto expression = Expression::compile(valueText, error);
    if (!expression)
        return false;
    s.kind = Kind::SetValue;
    s.expression = std::move(*expression);
    return true;
}

std::string WithoutComment(const std::string& line)
{
    return NormaliseCommand(std::string_view(line).substr(0, line.find(';')));
}

} // namespace

bool CompileProgram(const std::vector<std::string>& lines, std::vector<Statement>& code, int& errorLine,
                    std::string& error)
{
    using Kind = Statement::Kind;
    code.clear();
    std::vector<std::size_t> open; // WHILE and IF (and ELSE) still waiting for their end
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string text = WithoutComment(lines[i]);
        if (text.empty())
            continue;
        errorLine = static_cast<int>(i + 1);
        Statement s;
        s.line = errorLine;
        if (!CompileLine(text, s, error))
            return false;
        const std::size_t here = code.size();
        switch (s.kind) {
        case Kind::While:
        case Kind::If: open.push_back(here); break;
        case Kind::Else:
            if (open.empty() || code[open.back()].kind != Kind::If) {
                error = "ELSE without IF";
                return false;
            }
            code[open.back()].jump = here + 1;
            open.back() = here;
            break;
        case Kind::EndIf:
            if (open.empty() || (code[open.back()].kind != Kind::If && code[open.back()].kind != Kind::Else)) {
                error = "ENDIF without IF";
                return false;
            }
            code[open.back()].jump = here + 1;
            open.pop_back();
            break;
        case Kind::EndWhile:
            if (open.empty() || code[open.back()].kind != Kind::While) {
                error = "ENDWHILE without WHILE";
                return false;
            }
            code[open.back()].jump = here + 1;
            s.jump = open.back();
            open.pop_back();
            break;
        default: break;
        }
        code.push_back(std::move(s));
    }
    if (!open.empty()) {
        errorLine = code[open.back()].line;
        error = code[open.back()].kind == Kind::While ? "WHILE without ENDWHILE" : "IF without ENDIF";
        return false;
    }
    return true;
}

std::string ProgramRunner::start(const std::vector<std::string>& lines, int program, std::int64_t now)
{
    int errorLine = 0;
    std::string error;
    message_.clear();
    if (!CompileProgram(lines, code_, errorLine, error)) {
        state_ = ProgramState::Errored;
        currentLine_ = errorLine;
        message_ = "Line " + std::to_string(errorLine) + ": " + error;
        return "program " + std::to_string(program) + " line " + std::to_string(errorLine) + ": " + error;
    }
    pc_ = 0;
    state_ = ProgramState::Running;
    currentLine_ = code_.empty() ? 0 : code_.front().line;
    nextStepAt_ = now;
    return {};
}

void ProgramRunner::quit()
{
    state_ = ProgramState::Idle;
    currentLine_ = 0;
}

void ProgramRunner::pause()
{
    if (active())
        state_ = ProgramState::Paused;
}

void ProgramRunner::resume(std::int64_t now)
{
    if (state_ != ProgramState::Paused)
        return;
    state_ = ProgramState::Running;
    nextStepAt_ = std::max(nextStepAt_, now);
}

void ProgramRunner::clearError()
{
    message_.clear();
    if (state_ == ProgramState::Errored)
        quit();
    else if (state_ == ProgramState::Warning)
        state_ = ProgramState::Running;
}

std::optional<std::int64_t> ProgramRunner::nextStep() const
{
    if (!active())
        return std::nullopt;
    return nextStepAt_;
}

void ProgramRunner::finish()
{
    state_ = ProgramState::Idle;
    currentLine_ = 0;
}

void ProgramRunner::fail(const Statement& statement, const std::string& why, ProgramState state)
{
    message_ = "Line " + std::to_string(statement.line) + ": " + why;
    state_ = state;
}

bool ProgramRunner::evaluate(Machine& machine, const Statement& statement, std::int64_t& value)
{
    std::string error;
    if (statement.expression.evaluate(machine, value, error))
        return true;
    fail(statement, error, ProgramState::Errored);
    return false;
}

void ProgramRunner::step(Machine& machine, std::int64_t now)
{
    using Kind = Statement::Kind;
    if (!active() || now < nextStepAt_)
        return;
    if (pc_ >= code_.size()) {
        finish();
        return;
    }
    const Statement& s = code_[pc_];
    currentLine_ = s.line;
    nextStepAt_ = now + kStepMicros;
    std::int64_t value = 0;
    switch (s.kind) {
    case Kind::Perform:
    case Kind::SetValue: {
        Command command = s.command;
        if (s.kind == Kind::SetValue) {
            if (!evaluate(machine, s, value))
                return;
            command.value = value;
        }
        ++pc_;
        const std::string error = machine.perform(command);
        // The command may have ended this very program (QUIT, ABORT).
        if (!error.empty() && active())
            fail(s, error, ProgramState::Warning);
        return;
    }
    case Kind::While:
    case Kind::If:
        if (!evaluate(machine, s, value))
            return;
        pc_ = value != 0 ? pc_ + 1 : s.jump;
        return;
    case Kind::EndWhile:
    case Kind::Else: pc_ = s.jump; return;
    case Kind::EndIf: ++pc_; return;
    case Kind::End: finish(); return;
    case Kind::Delay:
        if (!evaluate(machine, s, value))
            return;
        if (value < 0 || value > kLongestDelayMs) {
            fail(s, "DELAY takes 0 to " + std::to_string(kLongestDelayMs) + " ms", ProgramState::Errored);
            return;
        }
        nextStepAt_ = now + value * 1000;
        ++pc_;
        return;
    case Kind::Wait: {
        const std::int64_t idle = machine.idleAt(s.axisMask);
        if (idle > now)
            nextStepAt_ = idle;
        else
            ++pc_;
        return;
    }
    }
}

} // namespace marlune::sim
