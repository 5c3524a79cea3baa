#include "config/encoder_map.h"

#include "link/bit_arithmetic.h"

namespace marlune::config {

namespace {

constexpr std::int32_t kTwelveBits = 0xFFF;
constexpr int kHighShift = 12;
constexpr std::int32_t kFieldMask = 3;

} // namespace

std::int32_t LowNumber(std::int32_t word) { return link::BitAnd(word, kTwelveBits); }

std::int32_t HighNumber(std::int32_t word) { return link::BitAnd(link::ShiftRight(word, kHighShift), kTwelveBits); }

std::int32_t PairedWordOf(std::int32_t low, std::int32_t high)
{
    return link::BitOr(link::BitAnd(low, kTwelveBits), link::ShiftLeft(link::BitAnd(high, kTwelveBits), kHighShift));
}

int MultiplicationField(std::int32_t word, int axis)
{
    const int field = link::BitAnd(link::ShiftRight(word, 2 * axis), kFieldMask);
    return field == kFieldMask ? 0 : field;
}

std::int32_t WithMultiplicationField(std::int32_t word, int axis, int field)
{
    return link::BitOr(word, link::ShiftLeft(field, 2 * axis));
}

const BitTable& EncoderEnableBits()
{
    static const BitTable table = AxisBits("EncEnable", 6);
    return table;
}

std::int32_t AttemptsOf(std::int32_t i2) { return link::BitAnd(link::ShiftRight(i2, kAttemptShift), kAttemptMask); }

std::int32_t EncoderI2(std::int32_t controllerI2, std::int32_t enableBits, std::int32_t attempts)
{
    const std::int32_t share =
            link::BitOr(link::ShiftLeft(link::BitAnd(attempts, kAttemptMask), kAttemptShift), enableBits);
    return link::BitOr(link::BitAnd(controllerI2, kSetupShareOfI2), share);
}

} // namespace marlune::config
