#include "trapezoid.h"

#include <algorithm>
#include <cmath>

namespace marlune::sim {

namespace {

// The acceleration in pulses per second squared, or 0 for a profile without ramps.
double Acceleration(const SpeedSettings& speeds)
{
    if (speeds.accelMs <= 0 || speeds.high <= speeds.low)
        return 0.0;
    return (speeds.high - speeds.low) / (speeds.accelMs / 1000.0);
}

} // namespace

Trapezoid Trapezoid::move(double distance, const SpeedSettings& speeds)
{
    Trapezoid t;
    t.length_ = std::max(distance, 0.0);
    const double high = std::max(1.0, static_cast<double>(speeds.high));
    const double low = std::clamp(static_cast<double>(speeds.low), 0.0, high);
    t.accel_ = Acceleration(speeds);
    if (t.accel_ <= 0.0) {
        t.startSpeed_ = t.peakSpeed_ = high;
        t.constTime_ = t.length_ / high;
        t.constLength_ = t.length_;
        return t;
    }
    t.startSpeed_ = low;
    const double rampLength = (high * high - low * low) / (2.0 * t.accel_);
    if (2.0 * rampLength <= t.length_) {
        t.peakSpeed_ = high;
        t.accelLength_ = rampLength;
        t.constLength_ = t.length_ - 2.0 * rampLength;
        t.constTime_ = t.constLength_ / high;
    } else {
        // Too short to reach the high speed: a triangle.
        t.peakSpeed_ = std::sqrt(low * low + t.accel_ * t.length_);
        t.accelLength_ = t.length_ / 2.0;
    }
    t.accelTime_ = (t.peakSpeed_ - low) / t.accel_;
    t.decelTime_ = t.accelTime_;
    return t;
}

Trapezoid Trapezoid::rampDown(double speed, const SpeedSettings& speeds)
{
    Trapezoid t;
    t.peakSpeed_ = t.startSpeed_ = speed;
    t.accel_ = Acceleration(speeds);
    const double low = std::max(0.0, static_cast<double>(speeds.low));
    if (t.accel_ <= 0.0 || speed <= low)
        return t;
    t.decelTime_ = (speed - low) / t.accel_;
    t.length_ = (speed + low) / 2.0 * t.decelTime_;
    return t;
}

double Trapezoid::distanceAt(double seconds) const
{
    if (seconds <= 0.0)
        return 0.0;
    if (seconds < accelTime_)
        return startSpeed_ * seconds + accel_ * seconds * seconds / 2.0;
    seconds -= accelTime_;
    if (seconds < constTime_)
        return accelLength_ + peakSpeed_ * seconds;
    seconds -= constTime_;
    if (seconds < decelTime_)
        return accelLength_ + constLength_ + peakSpeed_ * seconds - accel_ * seconds * seconds / 2.0;
    return length_;
}

double Trapezoid::speedAt(double seconds) const
{
    switch (phaseAt(seconds)) {
    case MotionPhase::Accelerating: return startSpeed_ + accel_ * std::max(seconds, 0.0);
    case MotionPhase::Constant: return peakSpeed_;
    case MotionPhase::Decelerating: return peakSpeed_ - accel_ * (seconds - accelTime_ - constTime_);
    case MotionPhase::Done: break;
    }
    return 0.0;
}

MotionPhase Trapezoid::phaseAt(double seconds) const
{
    if (seconds < accelTime_)
        return MotionPhase::Accelerating;
    if (seconds < accelTime_ + constTime_)
        return MotionPhase::Constant;
    if (seconds < duration())
        return MotionPhase::Decelerating;
    return MotionPhase::Done;
}

double Trapezoid::timeAt(double distance) const
{
    distance = std::clamp(distance, 0.0, length_);
    if (distance < accelLength_) {
        if (accel_ <= 0.0)
            return distance / startSpeed_;
        const double v = startSpeed_;
        return (-v + std::sqrt(v * v + 2.0 * accel_ * distance)) / accel_;
    }
    distance -= accelLength_;
    if (distance < constLength_ || decelTime_ <= 0.0)
        return accelTime_ + (peakSpeed_ > 0.0 ? distance / peakSpeed_ : 0.0);
    distance -= constLength_;
    const double v = peakSpeed_;
    const double root = std::max(0.0, v * v - 2.0 * accel_ * distance);
    return accelTime_ + constTime_ + (v - std::sqrt(root)) / accel_;
}

} // namespace marlune::sim
