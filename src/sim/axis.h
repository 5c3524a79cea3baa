#pragma once

#include "trapezoid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace marlune::sim {

// Bits of an axis status word, as the status record reports them.
namespace axis_status {
inline constexpr std::uint32_t kAccelerating = 0x0001;
inline constexpr std::uint32_t kDecelerating = 0x0002;
inline constexpr std::uint32_t kConstant = 0x0004;
inline constexpr std::uint32_t kAlarmInput = 0x0008;
inline constexpr std::uint32_t kPlusLimit = 0x0010;
inline constexpr std::uint32_t kMinusLimit = 0x0020;
inline constexpr std::uint32_t kHomeSwitch = 0x0040;
inline constexpr std::uint32_t kInPosition = 0x0080;
inline constexpr std::uint32_t kPlusLimitError = 0x0100;
inline constexpr std::uint32_t kMinusLimitError = 0x0200;
inline constexpr std::uint32_t kAlarmError = 0x0400;
} // namespace axis_status

// Where the simulated switches of every axis sit, in pulses of travel. Travel is
// counted from the power-up place and does not change when the position counter
// is set, so the switches stay where they are.
namespace switches {
inline constexpr std::int64_t kMinusLimitAt = -1'000'000;
inline constexpr std::int64_t kPlusLimitAt = 1'000'000;
inline constexpr std::int64_t kHomeFrom = 10'000;
inline constexpr std::int64_t kHomeTo = 10'999;
inline constexpr std::int64_t kIndexPitch = 4'000; // one index pulse per motor turn
inline constexpr std::int64_t kIndexWidth = 10;
} // namespace switches

enum class HomeMode { HomeSwitch, LimitSwitch, IndexPulse };

// One axis: a pulse counter, an encoder that follows it, trapezoidal moves,
// homing on the simulated switches, stops, limit and alarm errors.
// Every operation acts at the time of the last settle().
class Axis final {
public:
    // Brings the axis to `micros`: a move that has ended by then is finished.
    void settle(std::int64_t micros);
    // The end of the running move, if one runs.
    std::optional<std::int64_t> moveEnd() const;

    bool moving() const { return motion_.has_value(); }
    std::int64_t position() const { return travel() + counterOffset_; }
    std::int64_t encoder() const { return travel() + encoderOffset_; }
    std::int32_t speed() const;
    std::uint32_t statusWord() const;
    bool indexActive() const;
    bool inError() const { return errors_ != 0; }

    // Each returns an empty text when it was done, else why not.
    std::string moveTo(std::int64_t target, const SpeedSettings& speeds);
    std::string home(HomeMode mode, int direction, const SpeedSettings& speeds);
    void stop();
    void rampStop(const SpeedSettings& speeds);
    void setPosition(std::int64_t value) { counterOffset_ = value - travel(); }
    void setEncoder(std::int64_t value) { encoderOffset_ = value - travel(); }
    void clearErrors();
    void setAlarmInput(bool active);

private:
    enum class Arrival { Target, Limit, Home };
    struct Motion {
        std::int64_t start = 0;
        std::int64_t end = 0;
        std::int64_t from = 0;
        std::int64_t to = 0;
        int direction = 1;
        Trapezoid profile;
        Arrival arrival = Arrival::Target;
    };

    std::int64_t travel() const;
    double elapsed() const;
    std::string startMotion(std::int64_t to, const SpeedSettings& speeds, Arrival arrival);
    void arrive();

    std::int64_t now_ = 0;
    std::int64_t travel_ = 0;
    std::int64_t counterOffset_ = 0;
    std::int64_t encoderOffset_ = 0;
    std::uint32_t errors_ = 0;
    bool alarmInput_ = false;
    std::optional<Motion> motion_;
};

} // namespace marlune::sim
