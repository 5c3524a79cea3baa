#pragma once

#include "counts.h"

#include <array>
#include <cstdint>
#include <string>

namespace marlune::sim {

// The I variables (configuration words) and V variables (free for programs).
// Numbers run from 1. I48 is the EEPROM write counter and cannot be written.
class Variables final {
public:
    std::int32_t i(int n) const { return i_[static_cast<std::size_t>(n - 1)]; }
    std::int32_t v(int n) const { return v_[static_cast<std::size_t>(n - 1)]; }
    // Each returns an empty text when the value was taken, else why not.
    std::string setI(int n, std::int64_t value);
    std::string setV(int n, std::int64_t value);

    const std::array<std::int32_t, kICount>& iValues() const { return i_; }
    const std::array<std::int32_t, kVCount>& vValues() const { return v_; }
    void restore(const std::array<std::int32_t, kICount>& i, const std::array<std::int32_t, kVCount>& v);
    void setWriteCount(std::int32_t count) { i_[kICount - 1] = count; }

private:
    std::array<std::int32_t, kICount> i_{};
    std::array<std::int32_t, kVCount> v_{};
};

} // namespace marlune::sim
