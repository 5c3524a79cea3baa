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
    for (int i = 23; i >= 0; --i) {
        const std::int64_t p = std::int64_t{1} << i;
        const std::int64_t da = ra / p;
        ra -= da * p;
        const std::int64_t db = rb / p;
        rb -= db * p;
        if (isAnd ? (da == 1 && db == 1) : (da == 1 || db == 1))
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

TEST(BitArithmetic, DocumentedExamples)
{
    EXPECT_EQ(BitAnd(255, 15), 15);
    EXPECT_EQ(BitOr(8, 1), 9);
    EXPECT_EQ(BitAnd(8388609, 268419135), 1);
    EXPECT_EQ(BitAnd(-1, 255), 0);
    EXPECT_EQ(BitOr(-1, 255), 255);
    EXPECT_EQ(BitAnd(16777215, 16777215), 16777215);
    EXPECT_EQ(BitAnd(16777216, 16777216), 0);
    EXPECT_EQ(BitOr(16777216, 1), 1);
    EXPECT_EQ(BitAnd(8388608, 8388608), 8388608);
    EXPECT_EQ(BitAnd(25165824, 8388608), 0);
}

TEST(BitArithmetic, ShiftsCutTowardsZero)
{
    EXPECT_EQ(ShiftLeft(1, 23), 8388608);
    EXPECT_EQ(ShiftRight(8388608, 23), 1);
    EXPECT_EQ(ShiftRight(-1, 1), 0);
    EXPECT_EQ(ShiftRight(-3, 1), -1);
    EXPECT_EQ(ShiftLeft(-3, 2), -12);
    EXPECT_EQ(ShiftLeft(7, 0), 7);
    EXPECT_EQ(ShiftLeft(1, 31), 2147483647) << "beyond 32 bits the result saturates";
    EXPECT_EQ(ShiftLeft(-1, 40), -2147483647 - 1);
    EXPECT_EQ(ShiftRight(2147483647, 31), 0);
}

} // namespace
} // namespace marlune::link
