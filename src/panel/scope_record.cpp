#include "panel/scope_record.h"

#include "forms/number.h"
#include "link/bit_arithmetic.h"
#include "panel/main_control.h"
#include "panel/status_reply.h"

namespace marlune::panel {

namespace {

constexpr std::uint32_t kDigitalMask = (1U << kScopeDigitalPoints) - 1;

// "12.345" for 12345 ms.
std::string SecondsText(std::int64_t ms)
{
    const std::string fraction = std::to_string(1000 + ms % 1000);
    return std::to_string(ms / 1000) + "." + fraction.substr(1);
}

} // namespace

std::string TraceName(ScopeTrace trace)
{
    const auto axis = [&trace] { return std::string(kAxisLetters[static_cast<std::size_t>(trace.index % 4)]); };
    switch (trace.quantity) {
    case ScopeTrace::Quantity::Pulse: return "Pos" + axis();
    case ScopeTrace::Quantity::Encoder: return "Enc" + axis();
    case ScopeTrace::Quantity::Speed: return "Spd" + axis();
    case ScopeTrace::Quantity::Logic: break;
    }
    if (trace.index < kScopeDigitalPoints)
        return "DIO" + std::to_string(trace.index + 1);
    return (trace.index < kScopeClearBit ? "EO" : "CO") + axis();
}

std::int64_t TraceValue(const ScopeSample& sample, ScopeTrace trace)
{
    const auto axis = static_cast<std::size_t>(trace.index % 4);
    switch (trace.quantity) {
    case ScopeTrace::Quantity::Pulse: return sample.pulse[axis];
    case ScopeTrace::Quantity::Encoder: return sample.encoder[axis];
    case ScopeTrace::Quantity::Speed: return sample.speed[axis];
    case ScopeTrace::Quantity::Logic: break;
    }
    return (sample.logic >> trace.index) & 1U;
}

std::optional<ScopeSample> ReadScopeSample(std::string_view reply, std::int64_t timeMs, const ScopeSample* previous)
{
    const std::optional<StatusFields> split = SplitStatusReply(reply);
    if (!split)
        return std::nullopt;
    ScopeSample sample = previous ? *previous : ScopeSample{};
    sample.timeMs = timeMs;
    bool read = false;
    const auto field = [&](std::size_t number) -> std::optional<std::int32_t> {
        const auto& token = split->field[number - 1];
        std::optional<std::int32_t> value = token ? forms::ToInt32(*token) : std::nullopt;
        read = read || value.has_value();
        return value;
    };
    for (std::size_t a = 0; a < 4; ++a) {
        if (const auto value = field(1 + a))
            sample.pulse[a] = *value;
        if (const auto value = field(5 + a))
            sample.encoder[a] = *value;
        if (const auto value = field(9 + a))
            sample.speed[a] = *value;
    }
    if (const auto word = field(17))
        sample.logic = (sample.logic & ~kDigitalMask)
                       | static_cast<std::uint32_t>(link::BitAnd(*word, static_cast<std::int32_t>(kDigitalMask)));
    // The enable outputs are bits 0 to 3 of field 18, the clear outputs bits 4 to 7.
    if (const auto word = field(18))
        sample.logic = (sample.logic & kDigitalMask)
                       | (static_cast<std::uint32_t>(link::BitAnd(*word, 0xFF)) << kScopeEnableBit);
    if (!read)
        return std::nullopt;
    return sample;
}

ScopeRecord::ScopeRecord(std::size_t capacity, std::int64_t keptMs) : capacity_(capacity), keptMs_(keptMs) {}

const ScopeSample& ScopeRecord::at(std::size_t index) const { return ring_[(first_ + index) % capacity_]; }

void ScopeRecord::add(const ScopeSample& sample)
{
    if (!empty() && sample.timeMs < newest().timeMs)
        return;
    // The ring takes its whole size at the first sample, not when the scope is made.
    if (ring_.empty())
        ring_.resize(capacity_);
    if (count_ == capacity_) {
        first_ = (first_ + 1) % capacity_;
        --count_;
    }
    ring_[(first_ + count_) % capacity_] = sample;
    ++count_;
    while (at(0).timeMs < sample.timeMs - keptMs_) {
        first_ = (first_ + 1) % capacity_;
        --count_;
    }
}

void ScopeRecord::clear()
{
    first_ = 0;
    count_ = 0;
}

std::pair<std::size_t, std::size_t> ScopeRecord::span(std::int64_t fromMs, std::int64_t toMs) const
{
    // The first index whose time is not before `time` (or after it, when `after`).
    const auto bound = [this](std::int64_t time, bool after) {
        std::size_t low = 0;
        std::size_t high = count_;
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            const std::int64_t t = at(middle).timeMs;
            if (t < time || (after && t == time))
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    };
    const std::size_t first = bound(fromMs, false);
    return {first, std::max(first, bound(toMs, true))};
}

forms::PlotSeries ScopeRecord::series(ScopeTrace trace, std::int64_t fromMs, std::int64_t toMs, int columns) const
{
    forms::PlotSeries out{TraceName(trace), trace.quantity == ScopeTrace::Quantity::Logic, {}};
    std::vector<forms::PlotPoint>& points = out.points;
    const auto point = [&](std::size_t i) {
        return forms::PlotPoint{static_cast<double>(at(i).timeMs), static_cast<double>(TraceValue(at(i), trace))};
    };
    const auto put = [&](forms::PlotPoint p) {
        if (out.logic && !points.empty() && points.back().y != p.y)
            points.push_back({p.x, points.back().y});
        points.push_back(p);
    };
    const auto [first, last] = span(fromMs, toMs);
    if (columns <= 0 || toMs <= fromMs || last - first <= 2 * static_cast<std::size_t>(columns)) {
        for (std::size_t i = first; i < last; ++i)
            put(point(i));
        return out;
    }
    const double width = static_cast<double>(toMs - fromMs) / columns;
    const auto column = [&](std::size_t i) {
        return static_cast<int>(static_cast<double>(at(i).timeMs - fromMs) / width);
    };
    for (std::size_t i = first; i < last;) {
        const int current = column(i);
        forms::PlotPoint low = point(i);
        forms::PlotPoint high = low;
        for (++i; i < last && column(i) == current; ++i) {
            const forms::PlotPoint p = point(i);
            if (p.y < low.y)
                low = p;
            if (p.y > high.y)
                high = p;
        }
        put(low.x <= high.x ? low : high);
        if (low.y != high.y)
            put(low.x <= high.x ? high : low);
    }
    return out;
}

std::string ScopeRecord::csv(const std::vector<ScopeTrace>& traces, std::int64_t fromMs, std::int64_t toMs) const
{
    std::string text = "Time (s)";
    for (const ScopeTrace& trace : traces)
        text += "," + TraceName(trace);
    text += "\r\n";
    const auto [first, last] = span(fromMs, toMs);
    for (std::size_t i = first; i < last; ++i) {
        text += SecondsText(at(i).timeMs);
        for (const ScopeTrace& trace : traces)
            text += "," + std::to_string(TraceValue(at(i), trace));
        text += "\r\n";
    }
    return text;
}

} // namespace marlune::panel
