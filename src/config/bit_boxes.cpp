#include "config/bit_boxes.h"

#include "forms/form.h"
#include "link/bit_arithmetic.h"

namespace marlune::config {

namespace {

forms::CheckBox& Box(const forms::Form& form, const BitBox& bit)
{
    // The forms add every box of their tables, so a missing one is a wrong table.
    return *form.find<forms::CheckBox>(bit.control);
}

} // namespace

BitTable NumberedBits(const std::string& prefix, int count, int firstBit)
{
    BitTable table;
    for (int n = 1; n <= count; ++n) {
        const int bit = firstBit + n - 1;
        table.push_back({bit, link::ShiftLeft(1, bit), prefix + std::to_string(n), std::to_string(n)});
    }
    return table;
}

BitTable AxisBits(const std::string& prefix, int firstBit)
{
    BitTable table;
    for (int axis = 0; axis < kAxisCount; ++axis) {
        const int bit = firstBit + axis;
        table.push_back({bit, link::ShiftLeft(1, bit), prefix + kAxisLetters[axis], kAxisLetters[axis]});
    }
    return table;
}

void ShowBits(std::int32_t word, const BitTable& table, const forms::Form& form)
{
    for (const BitBox& bit : table)
        Box(form, bit).setValue(link::BitAnd(word, bit.mask) != 0 ? 1 : 0);
}

std::int32_t PackBits(const BitTable& table, const forms::Form& form)
{
    std::int32_t word = 0;
    for (const BitBox& bit : table) {
        if (Box(form, bit).value() == 1)
            word = link::BitOr(word, bit.mask);
    }
    return word;
}

} // namespace marlune::config
