#pragma once

#include "axis_id.h"
#include "program_store.h"

#include <array>
#include <cstdint>
#include <string>

namespace marlune::sim {

// Everything the status record reports, gathered at one moment.
struct StatusSnapshot {
    std::array<std::int64_t, kAxisCount> position{};
    std::array<std::int64_t, kAxisCount> encoder{};
    std::array<std::int32_t, kAxisCount> speed{};
    std::array<std::uint32_t, kAxisCount> axisStatus{};
    std::uint32_t digitalIo = 0;
    std::uint32_t outputsAndIndex = 0;
    std::array<int, kProgramCount> programState{};
    std::array<int, kProgramCount> programLine{};
    int joystick = 0;
    std::uint32_t latch = 0;
};

// "@" and 28 decimal fields: pulse positions, encoder positions, speeds and
// status words of X Y Z U; the digital I/O word; the output and index word; the
// states and current lines of programs 1-4; the joystick flag; the latch word.
// Every field ends with ",", except the digital I/O word and the latch word,
// which end with ".".
std::string FormatStatusRecord(const StatusSnapshot& status);

} // namespace marlune::sim
