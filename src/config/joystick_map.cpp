#include "config/joystick_map.h"

#include <cctype>

#include "link/bit_arithmetic.h"

namespace marlune::config {

namespace {

constexpr std::int32_t kSelectionMask = 7;

} // namespace

const BitTable& JoystickBits()
{
    static const BitTable table = [] {
        BitTable bits;
        for (const auto& [prefix, firstBit] : {std::pair{"JoyEnable", 0}, {"JoyEnableSlim", 4}, {"JoyDirection", 8}}) {
            const BitTable axes = AxisBits(prefix, firstBit);
            bits.insert(bits.end(), axes.begin(), axes.end());
        }
        return bits;
    }();
    return table;
}

int InputShift(int axis) { return 12 + 3 * axis; }

int InputSelection(std::int32_t word, int axis)
{
    return link::BitAnd(link::ShiftRight(word, InputShift(axis)), kSelectionMask);
}

std::int32_t WithInputSelection(std::int32_t word, int axis, int selection)
{
    return link::BitOr(word, link::ShiftLeft(selection, InputShift(axis)));
}

int EncoderOfText(const std::string& text, int axis)
{
    for (int encoder = 0; encoder < kAxisCount; ++encoder) {
        if (text.size() == 1 && std::toupper(static_cast<unsigned char>(text[0])) == kAxisLetters[encoder][0])
            return encoder;
    }
    return axis;
}

} // namespace marlune::config
