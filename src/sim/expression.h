#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::sim {

// A value that an expression may read from the controller.
struct Operand {
    enum class Kind { V, I, Dio, Analog, Position, Encoder };
    Kind kind = Kind::V;
    int index = 0; // variable or point number from 1, analog channel 1 or 2, axis 0 to 3
};

class ValueSource {
public:
    virtual ~ValueSource() = default;
    virtual std::int64_t read(const Operand& operand) const = 0;
};

// Integer arithmetic of the program language: + - * / with parentheses, unary
// signs, and at most one comparison (= == <> != < <= > >=) that gives 1 or 0.
// Compiled once, evaluated many times.
class Expression final {
public:
    // `text` in capitals, without blanks. On failure `error` says why.
    static std::optional<Expression> compile(std::string_view text, std::string& error);
    // A constant expression, for lines that carry a plain value.
    static Expression constant(std::int64_t value);
    // Returns false and says why when the value cannot be worked out.
    bool evaluate(const ValueSource& source, std::int64_t& result, std::string& error) const;

private:
    struct Step {
        enum class Code { Const, Load, Neg, Add, Sub, Mul, Div, Eq, Ne, Lt, Le, Gt, Ge };
        Code code = Code::Const;
        std::int64_t value = 0;
        Operand operand;
    };
    friend class ExpressionCompiler;
    std::vector<Step> steps_;
};

// Parses one operand name such as V12, I3, DIO5, AI1, PX or EU.
std::optional<Operand> ParseOperand(std::string_view name);

} // namespace marlune::sim
