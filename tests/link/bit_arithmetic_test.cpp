#include <gtest/gtest.h>

#include <tuple>

#include "link/bit_arithmetic.h"

namespace marlune::link {
namespace {

// The controller's own walk over bits 23 to 0, as the reference the closed forms must match.
std::int32_t Walk(std::int32_t a, std::int32_t b, bool isAnd)
{
    std::int64_t ra = a;
    std::int64_t rb = b;
    std::int32_t result = 0;
    for (std::int64_t p = 1 << 23; p >= 1; p /= 2) {
        const bool bitA = ra / p == 1;
        const bool bitB = rb / p == 1;
        ra %= p;
        rb %= p;
        if (isAnd ? bitA && bitB : bitA || bitB)
            result += static_cast<std::int32_t>(p);
    }
    return result;
}

class BitWords : public ::testing::TestWithParam<std::tuple<std::int32_t, std::int32_t>> {};

TEST_P(BitWords, AgreeWithTheControllersWalk)
{
    const auto [a, b] = GetParam();
    EXPECT_EQ(BitAnd(a, b), Walk(a, b, true)) << a << " and " << b;
    EXPECT_EQ(BitOr(a, b), Walk(a, b, false)) << a << " or " << b;
}

INSTANTIATE_TEST_SUITE_P(
        Words, BitWords,
        ::testing::Combine(::testing::Values(0, 1, 15, 255, 8388608, 8388609, 16777215, 16777216, 25165824, 268419135,
                                             0xFFFC03F, -1, -3, -16777216, 2147483647, -2147483647 - 1),
                           ::testing::Values(0, 1, 255, 8388608, 16777215, 16777216, 268419135, -1, 2147483647)));

TEST(BitArithmetic, ShiftsSaturateToTheLeftAndCutTowardsZeroToTheRight)
{
    const std::int32_t max = 2147483647;
    const std::int32_t table[][4] = {// value, count, ShiftLeft, ShiftRight
                                     {1, 23, 8388608, 0}, {8388608, 23, max, 1}, {-1, 1, -2, 0},  {-3, 1, -6, -1},
                                     {-3, 2, -12, 0},     {7, 0, 7, 7},          {1, 31, max, 0}, {-1, 40, -max - 1, 0},
                                     {max, 31, max, 0},   {5, -2, 5, 5},         {0, 70, 0, 0},   {3, 70, max, 0}};
    for (const auto& [value, count, left, right] : table) {
        EXPECT_EQ(ShiftLeft(value, count), left) << value << " << " << count;
        EXPECT_EQ(ShiftRight(value, count), right) << value << " >> " << count;
    }
}

} // namespace
} // namespace marlune::link
