#include "headless/virtual_clock.h"

#include <algorithm>

namespace marlune::headless {

void VirtualClock::moveTo(std::int64_t time) { now_ = std::max(now_, time); }

void VirtualClock::schedule(forms::Timer& timer, std::int64_t due)
{
    cancel(timer);
    entries_.push_back({due, nextOrder_++, &timer});
}

void VirtualClock::cancel(const forms::Timer& timer)
{
    std::erase_if(entries_, [&](const Entry& e) { return e.timer == &timer; });
}

std::optional<std::int64_t> VirtualClock::dueTime(const forms::Timer& timer) const
{
    for (const Entry& e : entries_) {
        if (e.timer == &timer)
            return e.due;
    }
    return std::nullopt;
}

std::optional<VirtualClock::Due> VirtualClock::takeNextDue(std::int64_t until)
{
    auto earliest = std::min_element(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
        return a.due != b.due ? a.due < b.due : a.order < b.order;
    });
    if (earliest == entries_.end() || earliest->due > until)
        return std::nullopt;
    const Due due{earliest->timer, earliest->due};
    entries_.erase(earliest);
    return due;
}

} // namespace marlune::headless
