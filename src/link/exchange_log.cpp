#include "link/exchange_log.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

namespace marlune::link {

namespace {

ExchangeFailure gNotedFailure = ExchangeFailure::None;

std::int64_t LocalTimeOfDayMicros(std::chrono::system_clock::time_point when)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(when);
    std::tm local{};
    localtime_r(&seconds, &local);
    const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(
                                when - std::chrono::system_clock::from_time_t(seconds))
                                .count();
    return ((local.tm_hour * 60LL + local.tm_min) * 60 + local.tm_sec) * 1'000'000 + micros;
}

} // namespace

ExchangeLog::ExchangeLog()
{
    // The wall clock is read once: each exchange reads only the steady clock, twice.
    const auto start = std::chrono::steady_clock::now();
    setClock(
            [start] {
                return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start)
                        .count();
            },
            LocalTimeOfDayMicros(std::chrono::system_clock::now()));
}

void ExchangeLog::setClock(Clock clock, std::int64_t timeOfDayAtZero)
{
    clock_ = std::move(clock);
    timeOfDayAtZero_ = timeOfDayAtZero;
}

void ExchangeLog::record(std::int64_t start, std::int64_t end, std::string_view request, std::string_view reply,
                         ExchangeFailure failure)
{
    ExchangeRecord& slot = slots_.size() < kCapacity ? slots_.emplace_back() : slots_[recorded_ % kCapacity];
    ++recorded_;
    slot.timeOfDayMicros = timeOfDayAtZero_ + start;
    slot.request.assign(request);
    slot.reply.assign(reply);
    slot.durationMicros = end - start;
    slot.failure = failure;
}

std::uint64_t ExchangeLog::oldest() const
{
    const std::uint64_t ringStart = recorded_ > kCapacity ? recorded_ - kCapacity + 1 : 1;
    return std::max(ringStart, firstKept_);
}

ExchangeLog& Log()
{
    static ExchangeLog log;
    return log;
}

void NoteExchangeFailure(ExchangeFailure why) { gNotedFailure = why; }

ExchangeFailure TakeNotedFailure() { return std::exchange(gNotedFailure, ExchangeFailure::None); }

} // namespace marlune::link
