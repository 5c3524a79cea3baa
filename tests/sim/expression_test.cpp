#include "expression.h"

#include <gtest/gtest.h>

namespace marlune::sim {
namespace {

class FixedValues final : public ValueSource {
public:
    std::int64_t read(const Operand& operand) const override
    {
        return operand.kind == Operand::Kind::V ? operand.index * 10 : -1;
    }
};

struct Case {
    const char* text;
    std::int64_t value;
};

class Evaluates : public ::testing::TestWithParam<Case> {};

TEST_P(Evaluates, ToTheExpectedValue)
{
    std::string error;
    const auto expression = Expression::compile(GetParam().text, error);
    ASSERT_TRUE(expression) << error;
    std::int64_t value = 0;
    ASSERT_TRUE(expression->evaluate(FixedValues(), value, error)) << error;
    EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Arithmetic, Evaluates,
                         ::testing::Values(Case{"1+2*3", 7}, Case{"(1+2)*3", 9}, Case{"10-4-3", 3}, Case{"100/7/2", 7},
                                           Case{"-7/2", -3}, Case{"--5", 5}, Case{"V3+V1", 40}, Case{"-(V2-30)*2", 20},
                                           Case{"V1<V2", 1}, Case{"V2<=V1", 0}, Case{"3=3", 1}, Case{"3<>3", 0},
                                           Case{"2+1>=3", 1}, Case{"2147483647*2", 4294967294}));

class Refuses : public ::testing::TestWithParam<const char*> {};

TEST_P(Refuses, WithAReason)
{
    std::string error;
    EXPECT_FALSE(Expression::compile(GetParam(), error));
    EXPECT_FALSE(error.empty());
}

INSTANTIATE_TEST_SUITE_P(Syntax, Refuses,
                         ::testing::Values("", "1+", "(1", "1)", "V0", "V249", "Q5", "1<2<3", "99999999999", "PQ",
                                           "DIO25", "AI3"));

TEST(Expression, DivisionByZeroAndOverflowAreReported)
{
    std::string error;
    std::int64_t value = 0;
    for (const char* text : {"V1/(V2-20)", "2147483647*2147483647*2147483647"}) {
        const auto expression = Expression::compile(text, error);
        ASSERT_TRUE(expression) << text;
        EXPECT_FALSE(expression->evaluate(FixedValues(), value, error)) << text;
    }
}

TEST(Expression, OperandNames)
{
    EXPECT_EQ(ParseOperand("PU")->kind, Operand::Kind::Position);
    EXPECT_EQ(ParseOperand("PU")->index, 3);
    EXPECT_EQ(ParseOperand("EX")->kind, Operand::Kind::Encoder);
    EXPECT_EQ(ParseOperand("DIO24")->index, 24);
    EXPECT_EQ(ParseOperand("I48")->kind, Operand::Kind::I);
    EXPECT_FALSE(ParseOperand("PXX"));
    EXPECT_FALSE(ParseOperand("V"));
}

} // namespace
} // namespace marlune::sim
