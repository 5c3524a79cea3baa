// The one conversion of text to a number: any bytes, any range.
#include "forms/number.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace marlune::forms;
    FuzzedDataProvider input(data, size);
    std::int64_t min = input.ConsumeIntegral<std::int64_t>();
    std::int64_t max = input.ConsumeIntegral<std::int64_t>();
    if (min > max)
        std::swap(min, max);
    const auto fraction = input.ConsumeBool() ? Fraction::Round : Fraction::Refuse;
    const std::string text = input.ConsumeRemainingBytesAsString();
    const WholeNumber number = ParseWholeNumber(text, min, max, fraction);
    if (number.ok() && (number.value < min || number.value > max))
        std::abort();
    DescribeNumberError(text, number.error, min, max);
    ToInt32(text);
    ToInt16(text);
    return 0;
}
