#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::forms {

// Why a text could not be turned into a whole number.
enum class NumberError { None, NotANumber, NotWhole, OutOfRange };

// What becomes of a fraction: rounded (the rule of the program), or refused where only a
// whole number makes sense to the operator.
enum class Fraction { Round, Refuse };

struct WholeNumber {
    std::int64_t value = 0;
    NumberError error = NumberError::None;

    bool ok() const { return error == NumberError::None; }
};

// The one conversion of text to a whole number in the program. Accepts blanks around the
// number, a sign, a decimal fraction and an exponent ("12", " -3.5 ", "1e3"), and rounds to
// the nearest whole number with ties to the even one, exactly (no floating point).
// A result outside [min, max] is OutOfRange; anything else that is no number is NotANumber.
WholeNumber ParseWholeNumber(std::string_view text, std::int64_t min, std::int64_t max,
                             Fraction fraction = Fraction::Round);

std::optional<std::int32_t> ToInt32(std::string_view text);
std::optional<std::int16_t> ToInt16(std::string_view text);

// A sentence for the operator: what was wrong with `text` and what was expected.
std::string DescribeNumberError(std::string_view text, NumberError error, std::int64_t min, std::int64_t max);

// Round half to even of a quotient of whole numbers (for progress steps and the like).
std::int64_t DivideRoundHalfEven(std::int64_t numerator, std::int64_t denominator);

} // namespace marlune::forms
