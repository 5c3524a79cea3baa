#pragma once

#include <cstdint>
#include <vector>

#include "config/bit_boxes.h"

namespace marlune::config {

// One word of the Setup dialog: the I variable and its boxes.
struct SetupWord {
    std::int16_t number;
    const BitTable& bits;
};

// I1 general configuration, I2 inputs and filtering, I12 digital I/O direction (a set bit makes
// the point an output), I13 the outputs at power-up; in the order of the read and the write.
const std::vector<SetupWord>& SetupWords();

// Bits 6 to 13 of I2 belong to the encoder dialog: the write carries them over from the controller.
inline constexpr std::int32_t kEncoderShareOfI2 = 0x3FC0;

// The I2 to write: the boxes' bits, with the encoder dialog's share as the controller holds it.
std::int32_t SetupI2(std::int32_t boxes, std::int32_t controllerI2);

} // namespace marlune::config
