#include "sim_test_support.h"

#include <cmath>

namespace marlune::sim::test {
namespace {

using namespace axis_status;

// The defaults: 1000 pulses/s high, 100 low, 300 ms ramp, so 3000 pulses/s² and ramps
// of 165 pulses. A move shorter than the two ramps is a triangle: it rises to
// sqrt(100² + 3000·length) and falls again at once.
double TriangleSeconds(double length) { return 2.0 * (std::sqrt(100.0 * 100.0 + 3000.0 * length) - 100.0) / 3000.0; }

// The state of X at a moment of a move from 0, ramp-stopped at `rampStopAt` where given: its
// phase bit, its speed and its position (-1: not checked).
struct ProfilePoint {
    std::int64_t length;
    double at;
    std::uint32_t bit;
    std::int64_t speed = -1;
    std::int64_t position = -1;
    double rampStopAt = 0;
};

class MoveProfile : public ::testing::TestWithParam<ProfilePoint> {};

TEST_P(MoveProfile, FollowsTheTrapezoidAndArrivesWhenItSays)
{
    Controller c;
    const ProfilePoint& p = GetParam();
    ASSERT_EQ(Ask(c, "X" + std::to_string(p.length)), "OK");
    if (p.rampStopAt > 0) {
        c.advanceTo(Seconds(p.rampStopAt));
        ASSERT_EQ(Ask(c, "RSTOPX"), "OK");
    }
    c.advanceTo(std::llround(p.at * 1e6));
    EXPECT_EQ(c.axisStatus(AxisId::X) & (kAccelerating | kConstant | kDecelerating | kInPosition), p.bit);
    EXPECT_EQ(c.axisMoving(AxisId::X), p.bit != kInPosition);
    if (p.speed >= 0) {
        EXPECT_EQ(StatusField(c, 9), p.speed);
    }
    if (p.position >= 0) {
        EXPECT_EQ(c.position(AxisId::X), p.position);
        EXPECT_EQ(c.encoder(AxisId::X), p.position);
    }
}

// 9670 pulses between the ramps take 9.67 s; 250 pulses lie between one and two ramps. A ramp
// stop at 4865 decelerates to the low speed over the ramp time, covering 165 pulses.
INSTANTIATE_TEST_SUITE_P(
        Trapezoid, MoveProfile,
        ::testing::Values(ProfilePoint{10000, 0.1, kAccelerating, 400}, ProfilePoint{10000, 5.0, kConstant, 1000},
                          ProfilePoint{10000, 10.17, kDecelerating, 400}, ProfilePoint{10000, 10.269999, kDecelerating},
                          ProfilePoint{10000, 10.27, kInPosition, 0, 10000}, ProfilePoint{10000, 11.0, kInPosition, 0},
                          ProfilePoint{100, TriangleSeconds(100) - 1e-6, kDecelerating},
                          ProfilePoint{100, TriangleSeconds(100), kInPosition, 0, 100},
                          ProfilePoint{250, TriangleSeconds(250) - 1e-6, kDecelerating},
                          ProfilePoint{250, TriangleSeconds(250), kInPosition, 0, 250},
                          ProfilePoint{10000, 5.1, kDecelerating, -1, -1, 5.0},
                          ProfilePoint{10000, 5.3, kInPosition, 0, 4865 + 165, 5.0}));

// clang-format off
const Conversation kMotion[] = {
    {"SeveralAxesInOneCommandMoveTogetherEachOnItsOwnProfile", {
        {"HSPD2000"}, {"ACCEL0"}, {"X1000Y-200U4000"}, {"@100"}, {"PX", "200"}, {"PY", "-200"}, {"PZ", "0"}, {"@2000"},
        {"PX", "1000"}, {"PU", "4000"}}},
    {"IncrementalMovesAddToThePosition", {
        {"INC"}, {"X500"}, {"@5000"}, {"X-200"}, {"@10000"}, {"PX", "300"}, {"ABS"}, {"X0"}, {"@15000"}, {"PX", "0"}}},
    {"AMoveOfAMovingAxisIsRefusedAndNoAxisOfTheCommandStarts", {{"X5000"}, {"Y100X100", "?*"}, {"@1000"}, {"PY", "0"}}},
    {"PositionSetMovesTheCounterNotTheAxis", {
        {"PX=1000"}, {"EU=-25"}, {"PX", "1000"}, {"EU", "-25"}, {"X1500"}, {"@5000"}, {"PX", "1500"}, {"EX", "500"}}},
    {"StopHaltsAtOnceWhereTheAxisIs", {{"X10000"}, {"@5000"}, {"STOPX"}, {"PX", "4865"}, {"@6000"}, {"PX", "4865"}}},
    {"StopWithoutAnAxisStopsAllAndAbortStopsProgramsToo", {
        {"X5000Y5000"}, {"@1000"}, {"STOP"}, {"PY", "865"}, {"OPENPROG1"}, {"INC"}, {"WHILE 1"}, {"X10"}, {"WAITX"},
        {"ENDWHILE"}, {"CLOSE"}, {"RUN1"}, {"@2000"}, {"PSTAT1", "1,*"}, {"ABORT"}, {"PSTAT1", "0,0,0,5"},
        {"PX", "1008"}, {"@3000"}, {"PX", "1008"}, {"PY", "865"}}},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Motion, Converses, ::testing::ValuesIn(kMotion), NameOf);

TEST(Motion, ALimitOrTheAlarmInputStopsTheAxisWithAnErrorUntilCleared)
{
    Controller c;
    Play(c, {{"HSPD100000"}, {"X2000000"}, {"@60000"}, {"PX", "1000000"}, {"X0", "?*"}});
    EXPECT_EQ(c.axisStatus(AxisId::X) & (kPlusLimit | kPlusLimitError), kPlusLimit | kPlusLimitError);
    Play(c, {{"MECLEARX"}});
    EXPECT_EQ(c.axisStatus(AxisId::X) & kPlusLimitError, 0u);
    // Further into the active limit is refused, away from it is not.
    Play(c, {{"X1000001", "?*"}, {"MECLEARX"}, {"X0"}});

    // The alarm input stops the axis, and its error holds while the input is active.
    c.setAlarmInput(AxisId::X, true);
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    EXPECT_EQ(c.axisStatus(AxisId::X) & (kAlarmInput | kAlarmError), kAlarmInput | kAlarmError);
    Ask(c, "MECLEARX");
    EXPECT_NE(c.axisStatus(AxisId::X) & kAlarmError, 0u);
    c.setAlarmInput(AxisId::X, false);
    Ask(c, "MECLEARX");
    EXPECT_EQ(c.axisStatus(AxisId::X) & kAlarmError, 0u);
}

struct HomingCase {
    const char* command;
    std::uint32_t bitsAfter; // switch and error bits expected once the axis rests
    std::int64_t positionAfter;
};

class Homing : public ::testing::TestWithParam<HomingCase> {};

// The switches sit at fixed places of the travel: home switch 10000-10999,
// limits at ±1000000, an index pulse every 4000 pulses; the axes start at 0.
TEST_P(Homing, FindsItsSwitchAndSetsTheCounterToZero)
{
    Controller c;
    Play(c, {{"HSPD200000"}, {"PX=777"}});
    ASSERT_EQ(Ask(c, GetParam().command), "OK");
    c.advanceTo(Ms(1));
    EXPECT_TRUE(c.axisMoving(AxisId::X));
    c.advanceTo(Seconds(60));
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    const std::uint32_t watched = kHomeSwitch | kPlusLimit | kMinusLimit | kPlusLimitError | kMinusLimitError;
    EXPECT_EQ(c.axisStatus(AxisId::X) & watched, GetParam().bitsAfter);
    EXPECT_EQ(c.position(AxisId::X), GetParam().positionAfter);
    if (GetParam().positionAfter == 0) {
        EXPECT_EQ(c.encoder(AxisId::X), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(ThreeModes, Homing,
                         ::testing::Values(HomingCase{"HOMEX+", kHomeSwitch, 0},
                                           // The home switch lies behind: the search ends on the limit, with an error.
                                           HomingCase{"HOMEX-", kMinusLimit | kMinusLimitError, -1'000'000 + 777},
                                           HomingCase{"LHOMEX+", kPlusLimit, 0}, HomingCase{"LHOMEX-", kMinusLimit, 0},
                                           HomingCase{"ZHOMEX+", 0, 0}, HomingCase{"ZHOMEX-", 0, 0}));

TEST(Homing, IndexHomingFromAPulseGoesOnToTheNextOne)
{
    Controller c;
    Play(c, {{"PZ=55"}, {"ZHOMEY+"}, {"@20000"}, {"ZHOMEY+"}, {"@40000"}, {"PY", "0"}});
    // The index signal shows in the output and index word: bit 8 plus the axis.
    EXPECT_NE(StatusField(c, 18) & 0x200, 0);
    // Two turns of travel: 2000 pulses more reach the home switch at 10000. Z is left alone.
    Play(c, {{"Y2000"}, {"@60000"}, {"PZ", "55"}});
    EXPECT_NE(c.axisStatus(AxisId::Y) & kHomeSwitch, 0u);
}

} // namespace
} // namespace marlune::sim::test
