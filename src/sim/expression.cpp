#include "expression.h"

#include "axis_id.h"
#include "counts.h"

#include <cctype>
#include <charconv>
#include <cstdint>

namespace marlune::sim {

std::optional<Operand> ParseOperand(std::string_view name)
{
    std::size_t letters = 0;
    while (letters < name.size() && std::isalpha(static_cast<unsigned char>(name[letters])))
        ++letters;
    const std::string_view word = name.substr(0, letters);
    const std::string_view digits = name.substr(letters);
    using Kind = Operand::Kind;
    if (digits.empty() && word.size() == 2 && (word[0] == 'P' || word[0] == 'E')) {
        const auto axis = AxisFromLetter(word[1]);
        if (!axis)
            return std::nullopt;
        return Operand{word[0] == 'P' ? Kind::Position : Kind::Encoder, static_cast<int>(AxisIndex(*axis))};
    }
    struct Family {
        std::string_view word;
        Kind kind;
        int high;
    };
    static constexpr Family kFamilies[] = {{"V", Kind::V, kVCount},
                                           {"I", Kind::I, kICount},
                                           {"DIO", Kind::Dio, kDioCount},
                                           {"AI", Kind::Analog, kAnalogCount}};
    for (const Family& family : kFamilies) {
        if (word == family.word) {
            if (const auto index = ParseIndex(digits, family.high))
                return Operand{family.kind, *index};
            return std::nullopt;
        }
    }
    return std::nullopt;
}

// Recursive descent over the text, writing the steps in postfix order.
class ExpressionCompiler final {
public:
    explicit ExpressionCompiler(std::string_view text) : text_(text) {}

    bool run(Expression& out, std::string& error)
    {
        steps_ = &out.steps_;
        if (!comparison() || pos_ != text_.size()) {
            error = error_.empty() ? "unexpected \"" + std::string(text_.substr(pos_)) + "\"" : error_;
            return false;
        }
        return true;
    }

private:
    using Code = Expression::Step::Code;

    bool fail(std::string message)
    {
        if (error_.empty())
            error_ = std::move(message);
        return false;
    }
    bool eat(std::string_view token)
    {
        if (text_.substr(pos_, token.size()) != token)
            return false;
        pos_ += token.size();
        return true;
    }
    void emit(Code code) { steps_->push_back({code, 0, {}}); }

    bool comparison()
    {
        if (!sum())
            return false;
        static constexpr std::pair<std::string_view, Code> kRelations[] = {
                {"==", Code::Eq}, {"<>", Code::Ne}, {"!=", Code::Ne}, {"<=", Code::Le},
                {">=", Code::Ge}, {"<", Code::Lt},  {">", Code::Gt},  {"=", Code::Eq}};
        for (const auto& [token, code] : kRelations) {
            if (eat(token)) {
                if (!sum())
                    return false;
                emit(code);
                return true;
            }
        }
        return true;
    }
    bool sum()
    {
        if (!product())
            return false;
        for (;;) {
            const Code code = eat("+") ? Code::Add : eat("-") ? Code::Sub : Code::Const;
            if (code == Code::Const)
                return true;
            if (!product())
                return false;
            emit(code);
        }
    }
    bool product()
    {
        if (!factor())
            return false;
        for (;;) {
            const Code code = eat("*") ? Code::Mul : eat("/") ? Code::Div : Code::Const;
            if (code == Code::Const)
                return true;
            if (!factor())
                return false;
            emit(code);
        }
    }
    bool factor()
    {
        if (eat("-")) {
            if (!factor())
                return false;
            emit(Code::Neg);
            return true;
        }
        if (eat("+"))
            return factor();
        if (eat("(")) {
            if (!sum())
                return false;
            return eat(")") || fail("missing \")\"");
        }
        if (pos_ < text_.size() && std::isdigit(static_cast<unsigned char>(text_[pos_])))
            return number();
        return operand();
    }
    bool number()
    {
        std::int64_t value = 0;
        const char* begin = text_.data() + pos_;
        const auto [end, ec] = std::from_chars(begin, text_.data() + text_.size(), value);
        if (ec != std::errc() || value > INT32_MAX)
            return fail("number too large");
        pos_ += static_cast<std::size_t>(end - begin);
        steps_->push_back({Code::Const, value, {}});
        return true;
    }
    bool operand()
    {
        const std::size_t start = pos_;
        while (pos_ < text_.size() && std::isalpha(static_cast<unsigned char>(text_[pos_])))
            ++pos_;
        while (pos_ < text_.size() && std::isdigit(static_cast<unsigned char>(text_[pos_])))
            ++pos_;
        const std::string_view name = text_.substr(start, pos_ - start);
        if (name.empty())
            return fail(pos_ < text_.size() ? "unexpected \"" + std::string(text_.substr(pos_)) + "\""
                                            : "value missing");
        const auto found = ParseOperand(name);
        if (!found)
            return fail("unknown value \"" + std::string(name) + "\"");
        steps_->push_back({Code::Load, 0, *found});
        return true;
    }

    std::string_view text_;
    std::size_t pos_ = 0;
    std::vector<Expression::Step>* steps_ = nullptr;
    std::string error_;
};

std::optional<Expression> Expression::compile(std::string_view text, std::string& error)
{
    Expression expression;
    ExpressionCompiler compiler(text);
    if (!compiler.run(expression, error))
        return std::nullopt;
    return expression;
}

Expression Expression::constant(std::int64_t value)
{
    Expression expression;
    expression.steps_.push_back({Step::Code::Const, value, {}});
    return expression;
}

bool Expression::evaluate(const ValueSource& source, std::int64_t& result, std::string& error) const
{
    std::int64_t stack[32];
    std::size_t depth = 0;
    for (const Step& step : steps_) {
        if (step.code == Step::Code::Const || step.code == Step::Code::Load) {
            if (depth == std::size(stack)) {
                error = "expression too deep";
                return false;
            }
            stack[depth++] = step.code == Step::Code::Const ? step.value : source.read(step.operand);
            continue;
        }
        if (step.code == Step::Code::Neg) {
            stack[depth - 1] = -stack[depth - 1];
            continue;
        }
        const std::int64_t b = stack[--depth];
        std::int64_t& a = stack[depth - 1];
        bool overflow = false;
        switch (step.code) {
        case Step::Code::Add: overflow = __builtin_add_overflow(a, b, &a); break;
        case Step::Code::Sub: overflow = __builtin_sub_overflow(a, b, &a); break;
        case Step::Code::Mul: overflow = __builtin_mul_overflow(a, b, &a); break;
        case Step::Code::Div:
            if (b == 0) {
                error = "division by zero";
                return false;
            }
            overflow = a == INT64_MIN && b == -1;
            if (!overflow)
                a /= b;
            break;
        case Step::Code::Eq: a = a == b; break;
        case Step::Code::Ne: a = a != b; break;
        case Step::Code::Lt: a = a < b; break;
        case Step::Code::Le: a = a <= b; break;
        case Step::Code::Gt: a = a > b; break;
        case Step::Code::Ge: a = a >= b; break;
        case Step::Code::Const:
        case Step::Code::Load:
        case Step::Code::Neg: break;
        }
        if (overflow) {
            error = "number too large";
            return false;
        }
    }
    result = stack[0];
    return true;
}

} // namespace marlune::sim
