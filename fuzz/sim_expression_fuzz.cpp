// The expressions of the program language: compiled from any text, evaluated over any values.
#include "expression.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

// 32-bit values, as the controller keeps them, that differ from operand to operand.
class FuzzedValues final : public marlune::sim::ValueSource {
public:
    explicit FuzzedValues(std::int32_t seed) : seed_(seed) {}
    std::int64_t read(const marlune::sim::Operand& operand) const override
    {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(seed_) * (operand.index + 7u));
    }

private:
    std::int32_t seed_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const FuzzedValues values(input.ConsumeIntegral<std::int32_t>());
    const std::string text = input.ConsumeRemainingBytesAsString();
    std::string error;
    std::int64_t result = 0;
    marlune::sim::ParseOperand(text);
    if (const auto expression = marlune::sim::Expression::compile(text, error))
        expression->evaluate(values, result, error);
    return 0;
}
