#include "link/bit_arithmetic.h"

#include <limits>

namespace marlune::link {

namespace {

// The bits that the 24-round walk of the controller's arithmetic sees in a word.
std::int32_t VisibleBits(std::int32_t word)
{
    if (word < 0)
        return 0;
    if (word < (1 << 24))
        return word;
    return word & 0x7FFFFF;
}

} // namespace

std::int32_t BitAnd(std::int32_t a, std::int32_t b) { return VisibleBits(a) & VisibleBits(b); }

std::int32_t BitOr(std::int32_t a, std::int32_t b) { return VisibleBits(a) | VisibleBits(b); }

std::int32_t ShiftLeft(std::int32_t value, std::int32_t count)
{
    if (count <= 0)
        return value;
    if (count > 62)
        return value == 0 ? 0
                          : (value > 0 ? std::numeric_limits<std::int32_t>::max()
                                       : std::numeric_limits<std::int32_t>::min());
    const __int128 shifted = static_cast<__int128>(value) * (static_cast<__int128>(1) << count);
    if (shifted > std::numeric_limits<std::int32_t>::max())
        return std::numeric_limits<std::int32_t>::max();
    if (shifted < std::numeric_limits<std::int32_t>::min())
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(shifted);
}

std::int32_t ShiftRight(std::int32_t value, std::int32_t count)
{
    if (count <= 0)
        return value;
    if (count > 31)
        return 0;
    const std::int64_t divisor = std::int64_t{1} << count;
    return static_cast<std::int32_t>(static_cast<std::int64_t>(value) / divisor);
}

} // namespace marlune::link
