#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "forms/number.h"

namespace marlune::forms {
namespace {

TEST(WholeNumber, RoundsHalfToEvenExactly)
{
    const std::pair<const char*, std::int64_t> cases[] = {
            {"12", 12},   {" -3 ", -3},   {"+7", 7},     {"007", 7},     {"2.5", 2},       {"3.5", 4},
            {"-2.5", -2}, {"-3.5", -4},   {"0.5", 0},    {"1.5", 2},     {"2.5000001", 3}, {"2.4999999999999999999", 2},
            {".5", 0},    {"5.", 5},      {"1e3", 1000}, {"1.25E1", 12}, {"1.35e1", 14},   {"125e-1", 12},
            {"-0", 0},    {"\t42\t", 42}, {"1e-400", 0}};
    for (const auto& [text, expected] : cases) {
        const WholeNumber n = ParseWholeNumber(text, -1'000'000'000'000, 1'000'000'000'000);
        EXPECT_TRUE(n.ok() && n.value == expected) << '"' << text << "\" gives " << n.value;
    }
}

TEST(WholeNumber, TextThatIsNoNumberOrOutOfRangeIsSaidSo)
{
    for (const char* text : {"", " ", "abc", "12a", "1 2", "-", ".", "e5", "1e", "1e+", "0x10", "Error in Send!"})
        EXPECT_EQ(ParseWholeNumber(text, -100, 100).error, NumberError::NotANumber) << '"' << text << '"';
    for (const char* text : {"99999999999999999999999", "1e400", "100.6", "-101"})
        EXPECT_EQ(ParseWholeNumber(text, -100, 100).error, NumberError::OutOfRange) << text;
    EXPECT_EQ(DescribeNumberError("99", NumberError::OutOfRange, -5, 5),
              "\"99\" is out of range. Enter a whole number from -5 to 5.");
    // The fixed widths check their range after rounding.
    EXPECT_EQ(ToInt32("2147483647.4"), 2147483647);
    EXPECT_EQ(ToInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ToInt16("32767"), 32767);
    for (const char* text : {"2147483648", "-2147483649", "2147483647.5"})
        EXPECT_FALSE(ToInt32(text)) << text;
    EXPECT_FALSE(ToInt16("32768"));
}

TEST(WholeNumber, QuotientRoundsHalfToEven)
{
    const std::int64_t cases[][3] = {{10000, 20000, 0}, {10000, 3, 3333},  {10000, 6, 1667},
                                     {5, 2, 2},         {7, 2, 4},         {-5, 2, -2},
                                     {-7, 2, -4},       {10000, 30000, 0}, {10000, 15000, 1}};
    for (const auto& [numerator, denominator, quotient] : cases)
        EXPECT_EQ(DivideRoundHalfEven(numerator, denominator), quotient) << numerator << " / " << denominator;
}

} // namespace
} // namespace marlune::forms
