#pragma once

#include "program_store.h"
#include "variables.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace marlune::sim {

// What the EEPROM keeps over a power cycle.
struct EepromImage {
    std::array<std::vector<std::string>, kProgramCount> programs;
    std::array<std::int32_t, kICount> iValues{};
    std::array<std::int32_t, kVCount> vValues{};
    std::string ipAddress = "192.168.1.250";
    std::optional<std::string> projectName;
    std::optional<std::int32_t> programSet;
};

// The EEPROM: one image, a counter of writes, and the time a write takes, during
// which the controller does not answer.
class Eeprom final {
public:
    static constexpr std::int64_t kWriteMicros = 400'000;

    Eeprom() = default;
    // An EEPROM as it was left: its image and how often it was written.
    Eeprom(EepromImage image, std::int32_t writeCount) : image_(std::move(image)), writeCount_(writeCount) {}

    void write(EepromImage image, std::int64_t now);
    bool busy(std::int64_t now) const { return now < busyUntil_; }
    const EepromImage& image() const { return image_; }
    std::int32_t writeCount() const { return writeCount_; }

private:
    EepromImage image_;
    std::int32_t writeCount_ = 0;
    std::int64_t busyUntil_ = 0;
};

} // namespace marlune::sim
