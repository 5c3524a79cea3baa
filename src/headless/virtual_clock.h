#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace marlune::forms {
class Timer;
}

namespace marlune::headless {

// Time in milliseconds that passes only when told to, with the timers that wait on it.
class VirtualClock final {
public:
    std::int64_t now() const { return now_; }
    // Moves the clock forward; a time in the past leaves it where it is.
    void moveTo(std::int64_t time);

    // Schedules `timer` at `due`, replacing an earlier schedule of it. Timers due at the same
    // time fall due in the order they were scheduled.
    void schedule(forms::Timer& timer, std::int64_t due);
    void cancel(const forms::Timer& timer);
    std::optional<std::int64_t> dueTime(const forms::Timer& timer) const;

    struct Due {
        forms::Timer* timer;
        std::int64_t time;
    };
    // Takes the earliest timer due at or before `until` off the schedule.
    std::optional<Due> takeNextDue(std::int64_t until);

private:
    struct Entry {
        std::int64_t due;
        std::uint64_t order;
        forms::Timer* timer;
    };
    std::vector<Entry> entries_;
    std::int64_t now_ = 0;
    std::uint64_t nextOrder_ = 0;
};

} // namespace marlune::headless
