#pragma once

#include <cstdint>

namespace marlune::link {

// The controller's words have 24 bits. BitAnd and BitOr look at bits 23 to 0 only, and by
// the controller's arithmetic: a negative operand has no bit set, and an operand of 2^24 or
// more loses bit 23 as well as everything above it. Results lie in 0..16777215.
std::int32_t BitAnd(std::int32_t a, std::int32_t b);
std::int32_t BitOr(std::int32_t a, std::int32_t b);

// value * 2^count, rounded; callers keep the result within 32 bits (it saturates beyond).
std::int32_t ShiftLeft(std::int32_t value, std::int32_t count);
// value / 2^count, cut towards zero: ShiftRight(-3, 1) is -1, not -2.
std::int32_t ShiftRight(std::int32_t value, std::int32_t count);

} // namespace marlune::link
