#pragma once

#include "counts.h"

#include <cstdint>
#include <string>

namespace marlune::sim {

// The 24 digital points. Which of them are outputs is the direction word (I12),
// which the caller passes in, since the operator may change it at any time.
class DigitalIo final {
public:
    // Bit n-1 for point n: outputs show what was written, inputs what they read.
    std::uint32_t word(std::uint32_t direction) const;
    bool read(int point, std::uint32_t direction) const { return (word(direction) >> (point - 1)) & 1u; }
    // Empty when done, else why not.
    std::string write(int point, std::int64_t value, std::uint32_t direction);
    void setInput(int point, bool on);
    void powerUp(std::uint32_t bootState) { outputs_ = bootState & kMask; }

private:
    static constexpr std::uint32_t kMask = 0xFFFFFF;
    std::uint32_t outputs_ = 0;
    std::uint32_t inputs_ = 0;
};

// The enable and clear outputs of the four axes: bits 0-3 enable, 4-7 clear.
class AxisOutputs final {
public:
    bool read(int axis, bool clear) const { return (bits_ >> bit(axis, clear)) & 1u; }
    std::string write(int axis, bool clear, std::int64_t value);
    std::uint32_t bits() const { return bits_; }
    void reset() { bits_ = 0; }

private:
    static int bit(int axis, bool clear) { return axis + (clear ? 4 : 0); }
    std::uint32_t bits_ = 0;
};

// The reading of analog input 1 or 2 (0 to 4095) at a time. The inputs sweep up
// and down slowly so that a monitor shows something alive, the same on every run.
std::int32_t AnalogReading(int channel, std::int64_t micros);

} // namespace marlune::sim
