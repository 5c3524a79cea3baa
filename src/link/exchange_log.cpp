#include "link/exchange_log.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <tuple>
#include <utility>

#if defined(__x86_64__) || defined(__i386__)
#include <x86intrin.h>
#endif

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

std::int64_t SteadyMicros()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
}

#if defined(__x86_64__) || defined(__i386__)

// The steady clock in microseconds, read through the processor's time-stamp counter: in a
// virtual machine a read of the steady clock costs some 50 ns and one of the counter under 20,
// and each exchange reads the time twice. The counter's rate is measured against the steady
// clock over the whole run, anew each second, and each second the counter is anchored to the
// steady clock again, so that its readings cannot drift from it; they never go back.
class CounterClock final {
public:
    CounterClock()
    {
        std::tie(firstMicros_, firstTicks_) = SteadyAndCounter();
        while (SteadyMicros() < firstMicros_ + 1000) {
        }
        anchor();
    }

    std::int64_t now()
    {
        std::uint64_t ticks = __rdtsc();
        // Unsigned: a counter behind the anchor, as another processor's may be, anchors anew too.
        if (ticks - anchorTicks_ > ticksPerSecond_) {
            anchor();
            ticks = anchorTicks_;
        }
        const auto micros =
                anchorMicros_ + static_cast<std::int64_t>(static_cast<double>(ticks - anchorTicks_) * microsPerTick_);
        return last_ = std::max(last_, micros);
    }

private:
    // A reading of both, taken again when something came between them.
    static std::pair<std::int64_t, std::uint64_t> SteadyAndCounter()
    {
        constexpr std::uint64_t kCloseTicks = 100'000;
        for (;;) {
            const std::uint64_t before = __rdtsc();
            const std::int64_t micros = SteadyMicros();
            const std::uint64_t after = __rdtsc();
            if (after - before < kCloseTicks)
                return {micros, before + (after - before) / 2};
        }
    }

    void anchor()
    {
        std::tie(anchorMicros_, anchorTicks_) = SteadyAndCounter();
        microsPerTick_ = static_cast<double>(std::max<std::int64_t>(anchorMicros_ - firstMicros_, 1))
                         / static_cast<double>(anchorTicks_ - firstTicks_);
        ticksPerSecond_ = static_cast<std::uint64_t>(1e6 / microsPerTick_);
    }

    std::int64_t firstMicros_ = 0;
    std::uint64_t firstTicks_ = 0;
    std::int64_t anchorMicros_ = 0;
    std::uint64_t anchorTicks_ = 0;
    double microsPerTick_ = 1;
    std::uint64_t ticksPerSecond_ = 0;
    std::int64_t last_ = 0;
};

std::int64_t QuickSteadyMicros()
{
    static CounterClock clock;
    return clock.now();
}

#else

std::int64_t QuickSteadyMicros() { return SteadyMicros(); }

#endif

} // namespace

ExchangeLog::ExchangeLog()
{
    // The wall clock is read once: each exchange reads only the steady time, twice.
    const std::int64_t start = QuickSteadyMicros();
    setClock([start] { return QuickSteadyMicros() - start; }, LocalTimeOfDayMicros(std::chrono::system_clock::now()));
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
