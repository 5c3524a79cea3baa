#pragma once

#include <cstdint>

namespace marlune::sim {

// Speeds of a move: pulses per second, and the time in milliseconds that the
// ramp from the low to the high speed takes (0: no ramp).
struct SpeedSettings {
    std::int32_t high = 1000;
    std::int32_t low = 100;
    std::int32_t accelMs = 300;
};

enum class MotionPhase { Accelerating, Constant, Decelerating, Done };

// A speed profile over a distance: a ramp up, a stretch at the peak speed and a
// ramp down, any of which may be empty. Distances and speeds are magnitudes;
// times are seconds from the start of the profile.
class Trapezoid final {
public:
    // A move over `distance` pulses that starts at the low speed, rises to the
    // high speed (or as far as the distance allows) and ends at the low speed.
    static Trapezoid move(double distance, const SpeedSettings& speeds);
    // A ramp from `speed` down to the low speed, as a ramped stop makes.
    static Trapezoid rampDown(double speed, const SpeedSettings& speeds);

    double duration() const { return accelTime_ + constTime_ + decelTime_; }
    double length() const { return length_; }
    double distanceAt(double seconds) const;
    double speedAt(double seconds) const;
    MotionPhase phaseAt(double seconds) const;
    // The time at which the profile has covered `distance` (0 to length()).
    double timeAt(double distance) const;

private:
    double startSpeed_ = 0;
    double peakSpeed_ = 0;
    double accel_ = 0;
    double accelTime_ = 0;
    double constTime_ = 0;
    double decelTime_ = 0;
    double accelLength_ = 0;
    double constLength_ = 0;
    double length_ = 0;
};

} // namespace marlune::sim
