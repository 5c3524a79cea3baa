#pragma once

#include <cstdint>

#include "config/bit_boxes.h"

namespace marlune::config {

// A word of two 12-bit numbers: one in bits 0 to 11, one in bits 12 to 23, each in its text box.
struct PairedWord {
    std::int16_t number;
    const char* low;
    const char* high;
    const char* lowCaption;
    const char* highCaption;
};

// I3 to I6 go by axis, ratio and pulse count side by side; I7 to I10 by kind, two axes a word.
inline constexpr PairedWord kPairedWords[] = {
        {3, "EncRatioX", "PulseRatioX", "Encoder Ratio X", "Pulse Ratio X"},
        {4, "EncRatioY", "PulseRatioY", "Encoder Ratio Y", "Pulse Ratio Y"},
        {5, "EncRatioZ", "PulseRatioZ", "Encoder Ratio Z", "Pulse Ratio Z"},
        {6, "EncRatioU", "PulseRatioU", "Encoder Ratio U", "Pulse Ratio U"},
        {7, "TolRangeX", "TolRangeY", "Tolerance Range X", "Tolerance Range Y"},
        {8, "TolRangeZ", "TolRangeU", "Tolerance Range Z", "Tolerance Range U"},
        {9, "CorRangeX", "CorRangeY", "Correction Range X", "Correction Range Y"},
        {10, "CorRangeZ", "CorRangeU", "Correction Range Z", "Correction Range U"},
};

std::int32_t LowNumber(std::int32_t word);
std::int32_t HighNumber(std::int32_t word);
// A number above 4095 loses its upper bits; a negative one counts as 0.
std::int32_t PairedWordOf(std::int32_t low, std::int32_t high);

// The named correction speed settings: queried bare, written with the text right behind the name.
inline constexpr const char* kCorrectionSettings[] = {"EHSPD", "ELSPD", "EACCEL"};

// I11: two bits per axis from bit 2 * axis, 0 for the factor 1, 1 for 2 and 2 for 4; a field
// of 3 reads as the factor 1. Bits 8 to 23 are written as 0.
inline constexpr std::int16_t kMultiplicationWord = 11;
int MultiplicationField(std::int32_t word, int axis);
std::int32_t WithMultiplicationField(std::int32_t word, int axis, int field);

// The encoder dialog's share of I2: the enable bits 6 to 9 and the correction attempts in 10 to 13.
const BitTable& EncoderEnableBits();
inline constexpr int kAttemptShift = 10;
inline constexpr std::int32_t kAttemptMask = 15;
// What the encoder write keeps of the controller's I2. The mask lies above 24 bits, so by the
// controller's arithmetic bit 23 is cleared as well as bits 6 to 13.
inline constexpr std::int32_t kSetupShareOfI2 = 0xFFFC03F;
std::int32_t AttemptsOf(std::int32_t i2);
// The I2 to write from the controller's I2, the enable boxes' bits and the attempts (0 to 15).
std::int32_t EncoderI2(std::int32_t controllerI2, std::int32_t enableBits, std::int32_t attempts);

} // namespace marlune::config
