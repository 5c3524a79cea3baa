#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"

namespace marlune::panel {

// The scope keeps the last ten minutes, sampled at most every 10 ms.
inline constexpr std::int64_t kScopeKeptMs = 10 * 60 * 1000;
inline constexpr std::int64_t kScopeFastestMs = 10;
inline constexpr std::size_t kScopeCapacity = kScopeKeptMs / kScopeFastestMs + 1;

// The 32 logic points of a sample: the 24 digital points, then the enable outputs of X, Y, Z, U,
// then their clear outputs.
inline constexpr int kScopeDigitalPoints = 24;
inline constexpr int kScopeEnableBit = 24;
inline constexpr int kScopeClearBit = 28;

// One status reply as the scope keeps it.
struct ScopeSample {
    std::int64_t timeMs = 0; // since the scope started
    std::array<std::int32_t, 4> pulse{};
    std::array<std::int32_t, 4> encoder{};
    std::array<std::int32_t, 4> speed{};
    std::uint32_t logic = 0;
};

// What one trace plots: a quantity of an axis, or one logic point (its bit in `logic`).
struct ScopeTrace {
    enum class Quantity { Pulse, Encoder, Speed, Logic } quantity = Quantity::Pulse;
    int index = 0; // the axis 0 to 3, or the bit 0 to 31
    bool operator==(const ScopeTrace&) const = default;
};

// "PosX", "EncY", "SpdZ", "DIO7", "EOU", "COX": the names of the panel's own controls.
std::string TraceName(ScopeTrace trace);
std::int64_t TraceValue(const ScopeSample& sample, ScopeTrace trace);

// Reads a status reply into a sample. A field that cannot be read keeps the value it had in
// `previous` (zero without one), so a trace holds its last reading rather than dropping to
// zero; nothing at all when not one of the fields the scope plots could be read.
std::optional<ScopeSample> ReadScopeSample(std::string_view reply, std::int64_t timeMs, const ScopeSample* previous);

// The kept samples in time order: a ring that drops the oldest past its capacity, and any
// sample older than the newest by more than the kept time.
class ScopeRecord final {
public:
    explicit ScopeRecord(std::size_t capacity = kScopeCapacity, std::int64_t keptMs = kScopeKeptMs);

    // A sample older than the newest is refused: time on the scope only goes forward.
    void add(const ScopeSample& sample);
    void clear();
    std::size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    // 0 is the oldest.
    const ScopeSample& at(std::size_t index) const;
    const ScopeSample& newest() const { return at(count_ - 1); }

    // The indexes [first, last) of the samples from `fromMs` to `toMs`, both included.
    std::pair<std::size_t, std::size_t> span(std::int64_t fromMs, std::int64_t toMs) const;

    // One trace from `fromMs` to `toMs` for a chart `columns` wide: every sample while they
    // fit, else the lowest and the highest of each column in their order, so that a spike of one
    // sample still shows. A logic trace comes as steps: it holds its value until the next point.
    forms::PlotSeries series(ScopeTrace trace, std::int64_t fromMs, std::int64_t toMs, int columns) const;

    // A header line of the trace names after "Time (s)", then one line per sample from `fromMs`
    // to `toMs`: the time in seconds with three decimals, then the values.
    std::string csv(const std::vector<ScopeTrace>& traces, std::int64_t fromMs, std::int64_t toMs) const;

private:
    std::vector<ScopeSample> ring_;
    std::size_t capacity_;
    std::int64_t keptMs_;
    std::size_t first_ = 0;
    std::size_t count_ = 0;
};

} // namespace marlune::panel
