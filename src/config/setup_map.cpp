#include "config/setup_map.h"

#include "link/bit_arithmetic.h"

namespace marlune::config {

namespace {

// Bits 5 to 9 and 23 have no box and are written as 0.
const BitTable kI1 = {
        {0, 0x1, "AutoRun1", "Prog1"},    {1, 0x2, "AutoRun2", "Prog2"},     {2, 0x4, "AutoRun3", "Prog3"},
        {3, 0x8, "AutoRun4", "Prog4"},    {4, 0x10, "JoyStick", "Joystick"}, {10, 0x400, "PulsePolX", "X"},
        {11, 0x800, "DirPolX", "X"},      {12, 0x1000, "PulsePolY", "Y"},    {13, 0x2000, "DirPolY", "Y"},
        {14, 0x4000, "PulsePolZ", "Z"},   {15, 0x8000, "DirPolZ", "Z"},      {16, 0x10000, "PulsePolU", "U"},
        {17, 0x20000, "DirPolU", "U"},    {18, 0x40000, "TwoClockX", "X"},   {19, 0x80000, "TwoClockY", "Y"},
        {20, 0x100000, "TwoClockZ", "Z"}, {21, 0x200000, "TwoClockU", "U"},  {22, 0x400000, "RampHome", "Ramp Home"},
};

// Bits 6 to 13 belong to the encoder dialog; bit 23 has no box.
const BitTable kI2 = {
        {0, 0x1, "HomePolX", "X"},     {1, 0x2, "HomePolY", "Y"},        {2, 0x4, "HomePolZ", "Z"},
        {3, 0x8, "HomePolU", "U"},     {4, 0x10, "LimitSwPol", "Limit"}, {5, 0x20, "Filter", "Filter"},
        {14, 0x4000, "InPosX", "X"},   {15, 0x8000, "InPosY", "Y"},      {16, 0x10000, "InPosZ", "Z"},
        {17, 0x20000, "InPosU", "U"},  {18, 0x40000, "AlarmX", "X"},     {19, 0x80000, "AlarmY", "Y"},
        {20, 0x100000, "AlarmZ", "Z"}, {21, 0x200000, "AlarmU", "U"},    {22, 0x400000, "EnableDecel", "Decel"},
};

const BitTable kI12 = NumberedBits("DIOC", 24);
const BitTable kI13 = NumberedBits("DO", 24);

} // namespace

const std::vector<SetupWord>& SetupWords()
{
    static const std::vector<SetupWord> words = {{1, kI1}, {2, kI2}, {12, kI12}, {13, kI13}};
    return words;
}

std::int32_t SetupI2(std::int32_t boxes, std::int32_t controllerI2)
{
    return link::BitOr(boxes, link::BitAnd(controllerI2, kEncoderShareOfI2));
}

} // namespace marlune::config
