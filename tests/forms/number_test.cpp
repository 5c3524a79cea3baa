#include <gtest/gtest.h>

#include <limits>

#include "forms/number.h"

namespace marlune::forms {
namespace {

struct Case {
    const char* text;
    std::int64_t expected;
};

class WholeNumberRounding : public ::testing::TestWithParam<Case> {};

TEST_P(WholeNumberRounding, RoundsHalfToEvenExactly)
{
    const WholeNumber n = ParseWholeNumber(GetParam().text, -1'000'000'000'000, 1'000'000'000'000);
    ASSERT_TRUE(n.ok()) << GetParam().text;
    EXPECT_EQ(n.value, GetParam().expected) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Texts, WholeNumberRounding,
                         ::testing::Values(Case{"12", 12}, Case{" -3 ", -3}, Case{"+7", 7}, Case{"007", 7},
                                           Case{"2.5", 2}, Case{"3.5", 4}, Case{"-2.5", -2}, Case{"-3.5", -4},
                                           Case{"0.5", 0}, Case{"1.5", 2}, Case{"2.5000001", 3},
                                           Case{"2.4999999999999999999", 2}, Case{".5", 0}, Case{"5.", 5},
                                           Case{"1e3", 1000}, Case{"1.25E1", 12}, Case{"1.35e1", 14},
                                           Case{"125e-1", 12}, Case{"-0", 0}, Case{"\t42\t", 42}));

TEST(WholeNumber, TextThatIsNoNumberIsSaidSo)
{
    for (const char* text :
         {"", " ", "abc", "12a", "1 2", "-", ".", "e5", "1e", "1e+", "0x10", "Error in Send Receive!"}) {
        EXPECT_EQ(ParseWholeNumber(text, -100, 100).error, NumberError::NotANumber) << '"' << text << '"';
    }
}

TEST(WholeNumber, RangeIsCheckedAfterRounding)
{
    EXPECT_TRUE(ToInt32("2147483647").has_value());
    EXPECT_FALSE(ToInt32("2147483648").has_value());
    EXPECT_EQ(ToInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_FALSE(ToInt32("-2147483649").has_value());
    EXPECT_EQ(ToInt32("2147483647.4"), 2147483647);
    EXPECT_FALSE(ToInt32("2147483647.5").has_value());
    EXPECT_EQ(ToInt16("32767"), 32767);
    EXPECT_FALSE(ToInt16("32768").has_value());
    EXPECT_EQ(ParseWholeNumber("99999999999999999999999", 0, 10).error, NumberError::OutOfRange);
    EXPECT_EQ(ParseWholeNumber("1e400", 0, 10).error, NumberError::OutOfRange);
    EXPECT_EQ(ParseWholeNumber("1e-400", 0, 10).value, 0);
}

TEST(WholeNumber, ErrorTextNamesTheTextAndTheRange)
{
    EXPECT_EQ(DescribeNumberError("12a", NumberError::NotANumber, -5, 5),
              "\"12a\" is not a number. Enter a whole number from -5 to 5.");
    EXPECT_EQ(DescribeNumberError("99", NumberError::OutOfRange, -5, 5),
              "\"99\" is out of range. Enter a whole number from -5 to 5.");
}

TEST(WholeNumber, QuotientRoundsHalfToEven)
{
    EXPECT_EQ(DivideRoundHalfEven(10000, 20000), 0);
    EXPECT_EQ(DivideRoundHalfEven(10000, 3), 3333);
    EXPECT_EQ(DivideRoundHalfEven(10000, 6), 1667);
    EXPECT_EQ(DivideRoundHalfEven(5, 2), 2);
    EXPECT_EQ(DivideRoundHalfEven(7, 2), 4);
    EXPECT_EQ(DivideRoundHalfEven(-5, 2), -2);
    EXPECT_EQ(DivideRoundHalfEven(-7, 2), -4);
    EXPECT_EQ(DivideRoundHalfEven(10000, 30000), 0);
    EXPECT_EQ(DivideRoundHalfEven(10000, 15000), 1);
}

} // namespace
} // namespace marlune::forms
