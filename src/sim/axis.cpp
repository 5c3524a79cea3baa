#include "axis.h"

#include <cmath>

namespace marlune::sim {

namespace {

std::int64_t FloorDiv(std::int64_t a, std::int64_t b)
{
    std::int64_t q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0)))
        --q;
    return q;
}

} // namespace

void Axis::settle(std::int64_t micros)
{
    now_ = micros;
    if (motion_ && now_ >= motion_->end)
        arrive();
}

std::optional<std::int64_t> Axis::moveEnd() const
{
    if (!motion_)
        return std::nullopt;
    return motion_->end;
}

double Axis::elapsed() const { return static_cast<double>(now_ - motion_->start) / 1e6; }

std::int64_t Axis::travel() const
{
    if (!motion_)
        return travel_;
    const auto covered = std::llround(motion_->profile.distanceAt(elapsed()));
    const std::int64_t length = motion_->direction * (motion_->to - motion_->from);
    return motion_->from + motion_->direction * std::min<std::int64_t>(covered, length);
}

std::int32_t Axis::speed() const
{
    if (!motion_)
        return 0;
    return static_cast<std::int32_t>(std::llround(motion_->profile.speedAt(elapsed())));
}

std::uint32_t Axis::statusWord() const
{
    using namespace axis_status;
    std::uint32_t word = errors_;
    if (motion_) {
        switch (motion_->profile.phaseAt(elapsed())) {
        case MotionPhase::Accelerating: word |= kAccelerating; break;
        case MotionPhase::Constant: word |= kConstant; break;
        case MotionPhase::Decelerating:
        case MotionPhase::Done: word |= kDecelerating; break;
        }
    } else {
        word |= kInPosition;
    }
    const std::int64_t at = travel();
    if (alarmInput_)
        word |= kAlarmInput;
    if (at >= switches::kPlusLimitAt)
        word |= kPlusLimit;
    if (at <= switches::kMinusLimitAt)
        word |= kMinusLimit;
    if (at >= switches::kHomeFrom && at <= switches::kHomeTo)
        word |= kHomeSwitch;
    return word;
}

bool Axis::indexActive() const
{
    const std::int64_t at = travel();
    return at - FloorDiv(at, switches::kIndexPitch) * switches::kIndexPitch < switches::kIndexWidth;
}

std::string Axis::moveTo(std::int64_t target, const SpeedSettings& speeds)
{
    return startMotion(target - counterOffset_, speeds, Arrival::Target);
}

std::string Axis::home(HomeMode mode, int direction, const SpeedSettings& speeds)
{
    const std::int64_t at = travel();
    const bool plus = direction > 0;
    switch (mode) {
    case HomeMode::HomeSwitch:
        if (at >= switches::kHomeFrom && at <= switches::kHomeTo)
            return startMotion(at, speeds, Arrival::Home);
        if (plus && at < switches::kHomeFrom)
            return startMotion(switches::kHomeFrom, speeds, Arrival::Home);
        if (!plus && at > switches::kHomeTo)
            return startMotion(switches::kHomeTo, speeds, Arrival::Home);
        // The switch lies behind: the search runs into the limit.
        return startMotion(plus ? switches::kPlusLimitAt + 1 : switches::kMinusLimitAt - 1, speeds, Arrival::Target);
    case HomeMode::LimitSwitch:
        return startMotion(plus ? switches::kPlusLimitAt : switches::kMinusLimitAt, speeds, Arrival::Home);
    case HomeMode::IndexPulse: {
        const std::int64_t turn = FloorDiv(at, switches::kIndexPitch) * switches::kIndexPitch;
        std::int64_t to = plus ? turn + switches::kIndexPitch : turn;
        if (!plus && to == at)
            to -= switches::kIndexPitch;
        return startMotion(to, speeds, Arrival::Home);
    }
    }
    return {};
}

std::string Axis::startMotion(std::int64_t to, const SpeedSettings& speeds, Arrival arrival)
{
    if (motion_)
        return "axis is moving";
    if (errors_ != 0)
        return "axis has an error, clear it with MECLEAR";
    const std::int64_t from = travel_;
    const int direction = to >= from ? 1 : -1;
    // A limit switch in the way ends the move there, unless the limit is the goal.
    const std::int64_t limit = direction > 0 ? switches::kPlusLimitAt : switches::kMinusLimitAt;
    const bool homingOnLimit = arrival == Arrival::Home && to == limit;
    if (!homingOnLimit && direction * (to - limit) > 0) {
        if (direction * (from - limit) >= 0) {
            errors_ |= direction > 0 ? axis_status::kPlusLimitError : axis_status::kMinusLimitError;
            return direction > 0 ? "plus limit active" : "minus limit active";
        }
    }
    Motion m;
    m.start = now_;
    m.from = from;
    m.direction = direction;
    m.arrival = arrival;
    m.profile = Trapezoid::move(static_cast<double>(direction * (to - from)), speeds);
    double seconds = m.profile.duration();
    m.to = to;
    if (!homingOnLimit && direction * (to - limit) > 0) {
        seconds = m.profile.timeAt(static_cast<double>(direction * (limit - from)));
        m.to = limit;
        m.arrival = Arrival::Limit;
    }
    m.end = now_ + std::llround(seconds * 1e6);
    motion_ = m;
    settle(now_);
    return {};
}

void Axis::arrive()
{
    const Motion m = *motion_;
    motion_.reset();
    travel_ = m.to;
    if (m.arrival == Arrival::Limit)
        errors_ |= m.direction > 0 ? axis_status::kPlusLimitError : axis_status::kMinusLimitError;
    if (m.arrival == Arrival::Home) {
        counterOffset_ = -travel_;
        encoderOffset_ = -travel_;
    }
}

void Axis::stop()
{
    if (!motion_)
        return;
    travel_ = travel();
    motion_.reset();
}

void Axis::rampStop(const SpeedSettings& speeds)
{
    if (!motion_)
        return;
    const Trapezoid ramp = Trapezoid::rampDown(speed(), speeds);
    const std::int64_t at = travel();
    const std::int64_t remaining = motion_->direction * (motion_->to - at);
    if (ramp.length() >= static_cast<double>(remaining))
        return; // the move ends sooner by itself
    Motion m = *motion_;
    m.start = now_;
    m.from = at;
    m.profile = ramp;
    m.to = at + m.direction * static_cast<std::int64_t>(std::llround(ramp.length()));
    m.end = now_ + std::llround(ramp.duration() * 1e6);
    m.arrival = Arrival::Target;
    motion_ = m;
    travel_ = at;
    settle(now_);
}

void Axis::clearErrors() { errors_ = alarmInput_ ? axis_status::kAlarmError : 0; }

void Axis::setAlarmInput(bool active)
{
    alarmInput_ = active;
    if (active) {
        errors_ |= axis_status::kAlarmError;
        stop();
    }
}

} // namespace marlune::sim
