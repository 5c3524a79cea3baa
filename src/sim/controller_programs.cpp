// The commands of the program slots: running, storing, uploading, the project.
#include "controller.h"

namespace marlune::sim {

namespace {

constexpr std::size_t kLongestProjectName = 250;

std::string ProgramName(int program) { return "program " + std::to_string(program); }

} // namespace

Controller::Reply Controller::programControl(const Command& command)
{
    const int n = command.index;
    ProgramRunner& r = runner(n);
    switch (command.op) {
    case Op::Run: {
        if (programs_.openProgram() == n)
            return error(ProgramName(n) + " is open, CLOSE it first");
        if (r.active() || r.state() == ProgramState::Paused)
            return error(ProgramName(n) + " is running already");
        if (programs_.lines(n).empty())
            return error(ProgramName(n) + " is empty");
        return outcome(r.start(programs_.lines(n), n, now_));
    }
    case Op::Quit: r.quit(); return done();
    case Op::Pause:
        if (!r.active())
            return error(ProgramName(n) + " is not running");
        r.pause();
        return done();
    case Op::Continue:
        if (r.state() != ProgramState::Paused)
            return error(ProgramName(n) + " is not paused");
        r.resume(now_);
        return done();
    case Op::ClearProgramError: r.clearError(); return done();
    case Op::ReadProgramError: return {true, r.message().empty() ? "No error" : r.message()};
    default: break;
    }
    return error("command not available");
}

Controller::Reply Controller::programStorage(const Command& command)
{
    const int n = command.index;
    switch (command.op) {
    case Op::CloseProgram: programs_.close(); return done();
    case Op::OpenProgram:
        if (runner(n).active() || runner(n).state() == ProgramState::Paused)
            return error(ProgramName(n) + " is running, QUIT it first");
        programs_.open(n);
        return done();
    case Op::ClearProgram:
        if (!programs_.openProgram())
            return error("no program is open, use OPEN PROG first");
        programs_.clearOpen();
        return done();
    case Op::ProgramStatus: {
        // state, current line, open for writing, number of lines; it also starts a new upload.
        programs_.rewindUpload(n);
        const ProgramRunner& r = runner(n);
        return {true, std::to_string(static_cast<int>(r.state())) + "," + std::to_string(r.currentLine()) + ","
                              + (programs_.openProgram() == n ? "1" : "0") + ","
                              + std::to_string(programs_.lines(n).size())};
    }
    case Op::Upload: return {true, programs_.nextUploadLine(n)};
    case Op::List: return {true, programs_.listing(n)};
    default: break;
    }
    return error("command not available");
}

Controller::Reply Controller::project(const Command& command)
{
    switch (command.op) {
    case Op::ReadProject: {
        std::string quoted(1, '"');
        quoted += projectName_.value_or(std::string());
        quoted += '"';
        return {true, quoted};
    }
    case Op::WriteProject:
        if (command.text.size() > kLongestProjectName)
            return error("project name longer than " + std::to_string(kLongestProjectName) + " characters");
        projectName_ = command.text;
        return done();
    case Op::ReadProgramSet:
        if (!programSet_)
            return error("no program set stored");
        return value(*programSet_);
    case Op::WriteProgramSet:
        if (command.value < 0 || command.value > 15)
            return error("PRON= takes 0 to 15");
        programSet_ = static_cast<std::int32_t>(command.value);
        return done();
    default: break;
    }
    return error("command not available");
}

} // namespace marlune::sim
