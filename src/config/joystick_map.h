#pragma once

#include <cstdint>
#include <string>

#include "config/bit_boxes.h"

namespace marlune::config {

// A column of the joystick's plain numbers: one text box per axis for four I variables in a row.
struct JoystickColumn {
    std::int16_t firstNumber; // the variable of axis X; Y, Z and U follow
    const char* prefix;       // the text boxes are the prefix followed by the axis letter
    const char* caption;
    const char* frame; // the group it stands in
};

// In the order of the read and the write: I23 to I46 first, then I14 to I21.
inline constexpr JoystickColumn kJoystickColumns[] = {
        {23, "JoyInputRange", "Input Range", "FrameSetup"},
        {27, "JoyMaxSpd", "Max Speed", "FrameSetup"},
        {31, "JoyZeroRange", "Zero Range", "FrameSetup"},
        {35, "NegInnerSlim", "Neg Inner Limit", "FrameSoftLimit"},
        {39, "PosInnerSlim", "Pos Inner Limit", "FrameSoftLimit"},
        {43, "NegOuterSlim", "Neg Outer Limit", "FrameSoftLimit"},
        {14, "PosOuterSlim", "Pos Outer Limit", "FrameSoftLimit"},
        {18, "MaxSpdChange", "Max Allowed Speed Change", "FrameFiltering"},
};

// I22: the enable, soft limit enable and direction bits of the axes, bits 0 to 11.
const BitTable& JoystickBits();

inline constexpr std::int16_t kJoystickWord = 22;

// The input selection of an axis is a 3-bit field of I22 from bit 12 + 3 * axis: 0 to 3 the
// encoder of axis X to U, 4 analog input 1, 5 analog input 2, 6 a variable, 7 a pair of points.
inline constexpr int kEncoderInputs = 4;
int InputShift(int axis);
int InputSelection(std::int32_t word, int axis);
std::int32_t WithInputSelection(std::int32_t word, int axis, int selection);

// The encoder that an encoder selection box names: "X" or "x" 0 up to "U" or "u" 3; any other
// text names the axis's own encoder.
int EncoderOfText(const std::string& text, int axis);

} // namespace marlune::config
