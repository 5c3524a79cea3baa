#include "io_points.h"

namespace marlune::sim {

std::uint32_t DigitalIo::word(std::uint32_t direction) const
{
    return ((outputs_ & direction) | (inputs_ & ~direction)) & kMask;
}

std::string DigitalIo::write(int point, std::int64_t value, std::uint32_t direction)
{
    const std::uint32_t bit = 1u << (point - 1);
    if ((direction & bit) == 0)
        return "DIO" + std::to_string(point) + " is an input (see I12)";
    if (value != 0 && value != 1)
        return "DIO" + std::to_string(point) + " takes 0 or 1";
    outputs_ = value ? outputs_ | bit : outputs_ & ~bit;
    return {};
}

void DigitalIo::setInput(int point, bool on)
{
    const std::uint32_t bit = 1u << (point - 1);
    inputs_ = on ? inputs_ | bit : inputs_ & ~bit;
}

std::string AxisOutputs::write(int axis, bool clear, std::int64_t value)
{
    if (value != 0 && value != 1)
        return "an enable or clear output takes 0 or 1";
    const std::uint32_t mask = 1u << bit(axis, clear);
    bits_ = value ? bits_ | mask : bits_ & ~mask;
    return {};
}

std::int32_t AnalogReading(int channel, std::int64_t micros)
{
    constexpr std::int64_t kFullScale = 4095;
    // Channel 1 rises and falls over 10 s, channel 2 over 6 s, a quarter turn later.
    const std::int64_t periodMs = channel == 1 ? 10'000 : 6'000;
    const std::int64_t offsetMs = channel == 1 ? 0 : periodMs / 4;
    const std::int64_t phase = (micros / 1000 + offsetMs) % periodMs;
    const std::int64_t half = periodMs / 2;
    const std::int64_t rise = phase < half ? phase : periodMs - phase;
    return static_cast<std::int32_t>(rise * kFullScale / half);
}

} // namespace marlune::sim
