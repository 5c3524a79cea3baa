#include "forms/number.h"

#include <limits>

namespace marlune::forms {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Digits of the number without the point, and the power of ten they are to be scaled by.
struct Decimal {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;
};

std::optional<Decimal> Scan(std::string_view text)
{
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n && IsBlank(text[i]))
        ++i;
    std::size_t end = n;
    while (end > i && IsBlank(text[end - 1]))
        --end;
    Decimal d;
    if (i < end && (text[i] == '+' || text[i] == '-')) {
        d.negative = text[i] == '-';
        ++i;
    }
    bool anyDigit = false;
    while (i < end && IsDigit(text[i])) {
        d.digits.push_back(text[i++]);
        anyDigit = true;
    }
    if (i < end && text[i] == '.') {
        ++i;
        while (i < end && IsDigit(text[i])) {
            d.digits.push_back(text[i++]);
            --d.exponent;
            anyDigit = true;
        }
    }
    if (!anyDigit)
        return std::nullopt;
    if (i < end && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool negativeExponent = false;
        if (i < end && (text[i] == '+' || text[i] == '-')) {
            negativeExponent = text[i] == '-';
            ++i;
        }
        if (i >= end || !IsDigit(text[i]))
            return std::nullopt;
        std::int64_t e = 0;
        while (i < end && IsDigit(text[i])) {
            if (e < 100000)
                e = e * 10 + (text[i] - '0');
            ++i;
        }
        d.exponent += negativeExponent ? -e : e;
    }
    if (i != end)
        return std::nullopt;
    return d;
}

} // namespace

WholeNumber ParseWholeNumber(std::string_view text, std::int64_t min, std::int64_t max, Fraction fraction)
{
    const auto scanned = Scan(text);
    if (!scanned)
        return {0, NumberError::NotANumber};
    const Decimal& d = *scanned;

    // Split into the whole part and the dropped fraction.
    std::string whole;
    std::string dropped;
    if (d.exponent >= 0) {
        whole = d.digits;
        if (d.exponent > 40)
            return {0, NumberError::OutOfRange};
        whole.append(static_cast<std::size_t>(d.exponent), '0');
    } else {
        const std::int64_t cut = static_cast<std::int64_t>(d.digits.size()) + d.exponent;
        if (cut > 0) {
            whole = d.digits.substr(0, static_cast<std::size_t>(cut));
            dropped = d.digits.substr(static_cast<std::size_t>(cut));
        } else {
            dropped = std::string(static_cast<std::size_t>(-cut), '0') + d.digits;
        }
    }
    std::size_t firstNonZero = whole.find_first_not_of('0');
    whole = firstNonZero == std::string::npos ? std::string() : whole.substr(firstNonZero);
    if (whole.size() > 18)
        return {0, NumberError::OutOfRange};
    std::int64_t magnitude = 0;
    for (char c : whole)
        magnitude = magnitude * 10 + (c - '0');

    const bool hasFraction = dropped.find_first_not_of('0') != std::string::npos;
    if (hasFraction && fraction == Fraction::Refuse)
        return {0, NumberError::NotWhole};
    // Round half to even on the dropped fraction.
    if (hasFraction) {
        const char first = dropped[0];
        const bool restZero = dropped.find_first_not_of('0', 1) == std::string::npos;
        if (first > '5' || (first == '5' && !restZero) || (first == '5' && restZero && magnitude % 2 == 1))
            ++magnitude;
    }
    const std::int64_t value = d.negative ? -magnitude : magnitude;
    if (value < min || value > max)
        return {0, NumberError::OutOfRange};
    return {value, NumberError::None};
}

std::optional<std::int32_t> ToInt32(std::string_view text)
{
    const WholeNumber n =
            ParseWholeNumber(text, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
    if (!n.ok())
        return std::nullopt;
    return static_cast<std::int32_t>(n.value);
}

std::optional<std::int16_t> ToInt16(std::string_view text)
{
    const WholeNumber n =
            ParseWholeNumber(text, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max());
    if (!n.ok())
        return std::nullopt;
    return static_cast<std::int16_t>(n.value);
}

std::string DescribeNumberError(std::string_view text, NumberError error, std::int64_t min, std::int64_t max)
{
    if (error == NumberError::None)
        return {};
    std::string sentence;
    sentence.append("\"").append(text).append("\"");
    switch (error) {
    case NumberError::NotANumber: sentence.append(" is not a number."); break;
    case NumberError::NotWhole: sentence.append(" is not a whole number."); break;
    default: sentence.append(" is out of range."); break;
    }
    sentence.append(" Enter a whole number from ").append(std::to_string(min)).append(" to ");
    sentence.append(std::to_string(max)).append(".");
    return sentence;
}

std::int64_t DivideRoundHalfEven(std::int64_t numerator, std::int64_t denominator)
{
    std::int64_t q = numerator / denominator;
    std::int64_t r = numerator % denominator;
    if (r == 0)
        return q;
    const bool negative = (numerator < 0) != (denominator < 0);
    const std::int64_t twiceR = 2 * (r < 0 ? -r : r);
    const std::int64_t absD = denominator < 0 ? -denominator : denominator;
    if (twiceR > absD || (twiceR == absD && q % 2 != 0))
        q += negative ? -1 : 1;
    return q;
}

} // namespace marlune::forms
