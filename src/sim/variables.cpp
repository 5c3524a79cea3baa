#include "variables.h"

#include <cstdint>

namespace marlune::sim {

namespace {

constexpr std::int64_t kWordMax = 0xFFFFFF;

// Configuration words hold 24 bits; the joystick numbers are plain integers.
bool IsBitWord(int n) { return n <= 13 || n == 22; }

} // namespace

std::string Variables::setI(int n, std::int64_t value)
{
    if (n == kICount)
        return "I48 counts EEPROM writes and cannot be set";
    if (IsBitWord(n) && (value < 0 || value > kWordMax))
        return std::string("I") + std::to_string(n) + " takes 0 to 16777215";
    if (value < INT32_MIN || value > INT32_MAX)
        return "value out of range";
    i_[static_cast<std::size_t>(n - 1)] = static_cast<std::int32_t>(value);
    return {};
}

std::string Variables::setV(int n, std::int64_t value)
{
    if (value < INT32_MIN || value > INT32_MAX)
        return std::string("V") + std::to_string(n) + " takes -2147483648 to 2147483647";
    v_[static_cast<std::size_t>(n - 1)] = static_cast<std::int32_t>(value);
    return {};
}

void Variables::restore(const std::array<std::int32_t, kICount>& i, const std::array<std::int32_t, kVCount>& v)
{
    const std::int32_t count = i_[kICount - 1];
    i_ = i;
    v_ = v;
    i_[kICount - 1] = count;
}

} // namespace marlune::sim
