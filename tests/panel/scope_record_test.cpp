#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "panel/scope_record.h"

namespace marlune::panel {
namespace {

using Quantity = ScopeTrace::Quantity;

std::vector<std::int64_t> Times(const ScopeRecord& record)
{
    std::vector<std::int64_t> times;
    for (std::size_t i = 0; i < record.size(); ++i)
        times.push_back(record.at(i).timeMs);
    return times;
}

struct RingCase {
    std::size_t capacity;
    std::int64_t keptMs;
    std::vector<std::int64_t> added;
    std::vector<std::int64_t> kept;
};

class Ring : public testing::TestWithParam<RingCase> {};

// The oldest go past the capacity, and past the kept time behind the newest; time never goes back.
TEST_P(Ring, KeepsTheNewestWithinCapacityAndTime)
{
    ScopeRecord record(GetParam().capacity, GetParam().keptMs);
    for (const std::int64_t time : GetParam().added)
        record.add({time});
    EXPECT_EQ(Times(record), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(Limits, Ring,
                         testing::Values(RingCase{3, 1000, {0, 10, 20, 30, 40}, {20, 30, 40}},
                                         RingCase{10, 100, {0, 50, 100, 101, 250}, {250}},
                                         RingCase{10, 100, {0, 50, 100, 150}, {50, 100, 150}},
                                         RingCase{4, 1000, {0, 50, 30, 60, 60}, {0, 50, 60, 60}}));

// A reply as "pos/enc/spd of X, Y, logic word in hex", or "none".
std::string Read(const std::string& reply, const ScopeSample* previous)
{
    const auto sample = ReadScopeSample(reply, 7, previous);
    if (!sample)
        return "none";
    char logic[16];
    std::snprintf(logic, sizeof logic, "%08X", sample->logic);
    std::string text;
    for (std::size_t a = 0; a < 2; ++a)
        text += std::to_string(sample->pulse[a]) + "/" + std::to_string(sample->encoder[a]) + "/"
                + std::to_string(sample->speed[a]) + " ";
    return text + logic;
}

// Fields 1-12 are the numbers of the axes, 17 the digital points, 18 the enable outputs (bits 0-3)
// and the clear outputs (bits 4-7); a field that cannot be read keeps the previous value.
TEST(ReadScopeSample, ReadsEachTraceAndKeepsThePreviousValueOfAFieldThatCannotBeRead)
{
    ScopeSample previous;
    previous.pulse = {1, 2, 3, 4};
    previous.speed = {9, 9, 9, 9};
    previous.logic = 0xF0000003;
    const std::pair<const char*, const char*> cases[] = {
            {"@10,-20,0,0,11,-21,0,0,4000,5,0,0,0,0,0,0,8388609.33,0,0,0,0,1,1,1,1.0,0.",
             "10/11/4000 -20/-21/5 21800001"},
            {"@x,,0,0,11,-21,0,0,1e99,5,0,0,0,0,0,0,,2,0,0,0,0,1,1,1,1.0,0.", "1/11/9 2/-21/5 02000003"},
            {"@x,y,0,0,11,-21,0,0,4,5,0,0,0,0,0,0,4.bad,0,0,0,0,1,1,1,1.0,0.", "1/11/4 2/-21/5 F0000004"},
            {"@a,b,c,d,e,f,g,h,i,j,k,l,0,0,0,0,x.y,0,0,0,0,1,1,1,1.0,0.", "none"},
            {"@", "none"},
    };
    for (const auto& [reply, expected] : cases)
        EXPECT_EQ(Read(reply, &previous), expected) << reply;
    EXPECT_EQ(Read("@,5,", nullptr), "0/0/0 5/0/0 00000000");
}

ScopeRecord Ramp(std::size_t samples, std::int32_t spikeAt, std::int32_t spike)
{
    ScopeRecord record;
    for (std::size_t i = 0; i < samples; ++i) {
        ScopeSample sample{static_cast<std::int64_t>(i) * 10};
        sample.speed[0] = static_cast<std::int32_t>(i) == spikeAt ? spike : 100;
        sample.logic = (i / 1000) % 2 == 1 ? 1U << kScopeEnableBit : 0;
        record.add(sample);
    }
    return record;
}

// Many samples come as the lowest and highest of each column, so a spike of one sample stays.
TEST(ScopeRecordSeries, DecimatesByColumnsAndKeepsASpikeOfOneSample)
{
    for (const std::int32_t spike : {5000, -5000}) {
        const ScopeRecord record = Ramp(60001, 31234, spike);
        const forms::PlotSeries series = record.series({Quantity::Speed, 0}, 0, 600000, 500);
        EXPECT_EQ(series.name, "SpdX");
        EXPECT_LE(series.points.size(), 1000U);
        const auto [low, high] = std::minmax_element(series.points.begin(), series.points.end(),
                                                     [](auto& a, auto& b) { return a.y < b.y; });
        EXPECT_EQ(spike > 0 ? high->y : low->y, spike);
        EXPECT_EQ(spike > 0 ? low->y : high->y, 100);
        EXPECT_TRUE(
                std::is_sorted(series.points.begin(), series.points.end(), [](auto& a, auto& b) { return a.x < b.x; }));
    }
    // Few samples come whole; a logic trace steps: it holds its value up to the next point.
    const ScopeRecord record = Ramp(30, -1, 0);
    EXPECT_EQ(record.series({Quantity::Speed, 0}, 100, 200, 500).points.size(), 11U);
    ScopeRecord sameTime;
    for (int i = 0; i < 30; ++i)
        sameTime.add({5});
    EXPECT_EQ(sameTime.series({Quantity::Speed, 0}, 5, 5, 10).points.size(), 30U) << "a range of no length";
    const forms::PlotSeries logic = Ramp(2001, -1, 0).series({Quantity::Logic, kScopeEnableBit}, 9980, 10010, 10);
    EXPECT_TRUE(logic.logic);
    EXPECT_EQ(logic.name, "EOX");
    EXPECT_EQ(logic.points, (std::vector<forms::PlotPoint>{{9980, 0}, {9990, 0}, {10000, 0}, {10000, 1}, {10010, 1}}));
}

// A header of the chosen traces, then one row per sample of the range, both ends included.
TEST(ScopeRecordCsv, HasAHeaderOfTheTracesAndARowPerSampleOfTheRange)
{
    ScopeRecord record;
    for (const std::int64_t time : {5, 999, 1005, 61234}) {
        ScopeSample sample{time};
        sample.pulse[3] = static_cast<std::int32_t>(-time);
        sample.encoder[1] = 7;
        sample.logic = time == 1005 ? (1U << 23) | (1U << kScopeClearBit) : 0;
        record.add(sample);
    }
    const std::vector<ScopeTrace> traces = {
            {Quantity::Pulse, 3}, {Quantity::Encoder, 1}, {Quantity::Logic, 23}, {Quantity::Logic, kScopeClearBit}};
    EXPECT_EQ(record.csv(traces, 999, 61234), "Time (s),PosU,EncY,DIO24,COX\r\n"
                                              "0.999,-999,7,0,0\r\n"
                                              "1.005,-1005,7,1,1\r\n"
                                              "61.234,-61234,7,0,0\r\n");
    EXPECT_EQ(record.csv({{Quantity::Speed, 2}}, 0, 998), "Time (s),SpdZ\r\n0.005,0\r\n");
    EXPECT_EQ(record.csv({}, 62000, 70000), "Time (s)\r\n");
}

} // namespace
} // namespace marlune::panel
