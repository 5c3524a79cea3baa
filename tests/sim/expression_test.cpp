#include "expression.h"

#include <gtest/gtest.h>

#include <optional>

namespace marlune::sim {
namespace {

// V3 reads 3, I48 1048, DIO24 2024, AI2 3002, PX 4000, EU 5003.
class FixedValues final : public ValueSource {
public:
    std::int64_t read(const Operand& operand) const override
    {
        return static_cast<int>(operand.kind) * 1000 + operand.index;
    }
};

struct Case {
    const char* text;
    std::optional<std::int64_t> value; // nullopt: it compiles, but its value cannot be reckoned
};

class Evaluates : public ::testing::TestWithParam<Case> {};

TEST_P(Evaluates, ToTheExpectedValueOrAReason)
{
    std::string error;
    const auto expression = Expression::compile(GetParam().text, error);
    ASSERT_TRUE(expression) << error;
    std::int64_t value = 0;
    const bool reckoned = expression->evaluate(FixedValues(), value, error);
    EXPECT_EQ(reckoned ? std::optional(value) : std::nullopt, GetParam().value) << error;
    EXPECT_NE(reckoned, !error.empty()) << error;
}

INSTANTIATE_TEST_SUITE_P(Arithmetic, Evaluates,
                         ::testing::Values(Case{"1+2*3", 7}, Case{"(1+2)*3", 9}, Case{"10-4-3", 3}, Case{"100/7/2", 7},
                                           Case{"-7/2", -3}, Case{"--5", 5}, Case{"V3+V1", 4}, Case{"-(V2-30)*2", 56},
                                           Case{"V1<V2", 1}, Case{"V2<=V1", 0}, Case{"3=3", 1}, Case{"3<>3", 0},
                                           Case{"2+1>=3", 1}, Case{"2147483647*2", 4294967294}, Case{"I48+DIO24", 3072},
                                           Case{"AI2", 3002}, Case{"PX-EU", -1003}, Case{"V1/(V2-2)", std::nullopt},
                                           Case{"2147483647*2147483647*2147483647", std::nullopt}));

class Refuses : public ::testing::TestWithParam<const char*> {};

TEST_P(Refuses, WithAReason)
{
    std::string error;
    EXPECT_FALSE(Expression::compile(GetParam(), error));
    EXPECT_FALSE(error.empty());
}

INSTANTIATE_TEST_SUITE_P(Syntax, Refuses,
                         ::testing::Values("", "1+", "(1", "1)", "V0", "V249", "Q5", "1<2<3", "99999999999", "PQ",
                                           "DIO25", "AI3", "PXX", "V"));

} // namespace
} // namespace marlune::sim
