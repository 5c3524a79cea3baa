#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marlune::forms {
class Form;
}

namespace marlune::config {

// The axes in the order that holds everywhere.
inline constexpr const char* kAxisLetters[] = {"X", "Y", "Z", "U"};
inline constexpr int kAxisCount = 4;

// One check box of a packed controller word: the one bit it stands for.
struct BitBox {
    int bit;
    std::int32_t mask;
    std::string control;
    std::string caption;
};

// The boxes of one word, in bit order.
using BitTable = std::vector<BitBox>;

// Boxes named `prefix` followed by 1 to `count`, for bits `firstBit` up, captioned with their
// numbers as an operator counts them.
BitTable NumberedBits(const std::string& prefix, int count, int firstBit = 0);
// Boxes named `prefix` followed by an axis letter, X to U, for four bits from `firstBit` up.
BitTable AxisBits(const std::string& prefix, int firstBit);

// Sets each box of the table to 1 where BitAnd of the word with its mask is not zero, else 0.
void ShowBits(std::int32_t word, const BitTable& table, const forms::Form& form);
// A word from 0 with the mask of every box that holds 1 put in by BitOr; bits without a box stay 0.
std::int32_t PackBits(const BitTable& table, const forms::Form& form);

} // namespace marlune::config
