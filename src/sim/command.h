#pragma once

#include "axis.h"
#include "axis_id.h"

#include <array>
#include <cstdint>
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
