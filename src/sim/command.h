#pragma once

#include "axis.h"
#include "axis_id.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

namespace marlune::sim {

// What one command asks of the controller, after parsing.
enum class Op {
    Status,
    Absolute,
    Incremental,
    Move,
    Home,
    Stop,
    RampStop,
    Abort,
    JoyOn,
    JoyOff,
    ReadSetting,
    WriteSetting,
    ReadPosition,
    WritePosition,
    ReadEncoder,
    WriteEncoder,
    ReadDio,
    WriteDio,
    ReadAxisOutput,
    WriteAxisOutput,
    ClearMotorError,
    ReadAnalog,
    ReadI,
    WriteI,
    ReadV,
    WriteV,
    ReadIp,
    WriteIp,
    Run,
    Quit,
    Pause,
    Continue,
    ClearProgramError,
    ReadProgramError,
    CloseProgram,
    OpenProgram,
    ClearProgram,
    ProgramStatus,
    Upload,
    List,
    ReadProject,
    WriteProject,
    ReadProgramSet,
    WriteProgramSet,
    Store,
    Load,
    StoreStatus,
};

// Which part of the controller carries an operation out.
enum class OpGroup { Status, Motion, Io, Setting, Memory, ProgramControl, ProgramStorage, Project };

// Where an operation may be given besides the command line: inside a program, and
// at once while a program is open for writing (other lines are then stored).
struct OpRule {
    Op op;
    OpGroup group;
    bool inProgram;
    bool whileOpen;
};

inline constexpr OpRule kOpRules[] = {
        {Op::Status, OpGroup::Status, false, true},
        {Op::Absolute, OpGroup::Motion, true, false},
        {Op::Incremental, OpGroup::Motion, true, false},
        {Op::Move, OpGroup::Motion, true, false},
        {Op::Home, OpGroup::Motion, true, false},
        {Op::Stop, OpGroup::Motion, true, false},
        {Op::RampStop, OpGroup::Motion, true, false},
        {Op::Abort, OpGroup::Motion, true, false},
        {Op::JoyOn, OpGroup::Io, true, false},
        {Op::JoyOff, OpGroup::Io, true, false},
        {Op::ReadSetting, OpGroup::Setting, false, false},
        {Op::WriteSetting, OpGroup::Setting, true, false},
        {Op::ReadPosition, OpGroup::Motion, false, false},
        {Op::WritePosition, OpGroup::Motion, true, false},
        {Op::ReadEncoder, OpGroup::Motion, false, false},
        {Op::WriteEncoder, OpGroup::Motion, true, false},
        {Op::ReadDio, OpGroup::Io, false, false},
        {Op::WriteDio, OpGroup::Io, true, false},
        {Op::ReadAxisOutput, OpGroup::Io, false, false},
        {Op::WriteAxisOutput, OpGroup::Io, true, false},
        {Op::ClearMotorError, OpGroup::Motion, true, false},
        {Op::ReadAnalog, OpGroup::Io, false, false},
        {Op::ReadI, OpGroup::Memory, false, false},
        {Op::WriteI, OpGroup::Memory, true, false},
        {Op::ReadV, OpGroup::Memory, false, false},
        {Op::WriteV, OpGroup::Memory, true, false},
        {Op::ReadIp, OpGroup::Memory, false, false},
        {Op::WriteIp, OpGroup::Memory, false, false},
        {Op::Run, OpGroup::ProgramControl, true, false},
        {Op::Quit, OpGroup::ProgramControl, true, false},
        {Op::Pause, OpGroup::ProgramControl, true, false},
        {Op::Continue, OpGroup::ProgramControl, true, false},
        {Op::ClearProgramError, OpGroup::ProgramControl, true, false},
        {Op::ReadProgramError, OpGroup::ProgramControl, false, false},
        {Op::CloseProgram, OpGroup::ProgramStorage, false, true},
        {Op::OpenProgram, OpGroup::ProgramStorage, false, true},
        {Op::ClearProgram, OpGroup::ProgramStorage, false, true},
        {Op::ProgramStatus, OpGroup::ProgramStorage, false, true},
        {Op::Upload, OpGroup::ProgramStorage, false, false},
        {Op::List, OpGroup::ProgramStorage, false, true},
        {Op::ReadProject, OpGroup::Project, false, false},
        {Op::WriteProject, OpGroup::Project, false, false},
        {Op::ReadProgramSet, OpGroup::Project, false, false},
        {Op::WriteProgramSet, OpGroup::Project, false, false},
        {Op::Store, OpGroup::Memory, false, false},
        {Op::Load, OpGroup::Memory, false, false},
        {Op::StoreStatus, OpGroup::Memory, false, true},
};

// The rules stand in the order of the operations, so that an operation finds its own at once.
constexpr const OpRule& RuleOf(Op op) { return kOpRules[static_cast<std::size_t>(op)]; }

constexpr bool RulesInOrder()
{
    for (std::size_t i = 0; i < std::size(kOpRules); ++i) {
        if (static_cast<std::size_t>(kOpRules[i].op) != i)
            return false;
    }
    return std::size(kOpRules) == static_cast<std::size_t>(Op::StoreStatus) + 1;
}
static_assert(RulesInOrder());

// The named speed settings: of moves, and of encoder correction moves.
enum class Setting { High, Low, Accel, CorrectionHigh, CorrectionLow, CorrectionAccel };

// The target of one axis in a move: a number, or the value of a V variable.
struct MoveTarget {
    bool used = false;
    bool fromVariable = false;
    bool negative = false;
    std::int64_t value = 0; // the number, or the V variable's number
};

struct Command {
    Op op = Op::Status;
    int index = 0; // program, variable, digital point or analog channel number, from 1
    AxisId axis = AxisId::X;
    bool allAxes = false; // STOP, RSTOP and MECLEAR without an axis letter
    int direction = 1;    // homing
    HomeMode homeMode = HomeMode::HomeSwitch;
    Setting setting = Setting::High;
    bool clearOutput = false; // CO rather than EO
    std::int64_t value = 0;
    std::string text; // IP address, project name
    std::array<MoveTarget, kAxisCount> targets{};
};

} // namespace marlune::sim
