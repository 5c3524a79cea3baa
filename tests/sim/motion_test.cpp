#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace marlune::sim::test {
namespace {

using namespace axis_status;

// The defaults: 1000 pulses/s high, 100 low, 300 ms ramp, so 3000 pulses/s².
TEST(Motion, LongMoveArrivesWhenTheTrapezoidSays)
{
    Controller c;
    EXPECT_EQ(ask(c, "X10000"), "OK");
    // Ramps of 165 pulses each take 0.3 s; 9670 pulses at 1000/s take 9.67 s.
    c.advanceTo(seconds(10.27) - ms(1));
    EXPECT_TRUE(c.axisMoving(AxisId::X));
    EXPECT_NE(c.axisStatus(AxisId::X) & kDecelerating, 0u);
    c.advanceTo(seconds(10.27));
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    EXPECT_EQ(c.position(AxisId::X), 10000);
    EXPECT_EQ(c.encoder(AxisId::X), 10000);
    EXPECT_EQ(ask(c, "PX"), "10000");
}

struct PhasePoint {
    double at;
    std::uint32_t bit;
    std::int64_t speed;
};

class MovePhases : public ::testing::TestWithParam<PhasePoint> {};

TEST_P(MovePhases, StatusBitsAndSpeedFollowTheProfile)
{
    Controller c;
    ASSERT_EQ(ask(c, "X10000"), "OK");
    c.advanceTo(seconds(GetParam().at));
    const auto word = static_cast<std::uint32_t>(statusField(c, 13));
    EXPECT_EQ(word & (kAccelerating | kConstant | kDecelerating | kInPosition), GetParam().bit);
    EXPECT_EQ(statusField(c, 9), GetParam().speed);
}

INSTANTIATE_TEST_SUITE_P(Trapezoid, MovePhases,
                         ::testing::Values(PhasePoint{0.1, kAccelerating, 400}, PhasePoint{5.0, kConstant, 1000},
                                           PhasePoint{10.17, kDecelerating, 400}, PhasePoint{11.0, kInPosition, 0}));

TEST(Motion, ShortMoveIsATriangleThatNeverReachesTheHighSpeed)
{
    Controller c;
    ASSERT_EQ(ask(c, "X100"), "OK");
    // Peak speed sqrt(100² + 3000·100), reached after (peak - 100) / 3000 s, twice.
    const double peak = std::sqrt(100.0 * 100.0 + 3000.0 * 100.0);
    const auto arrival = std::llround(2.0 * (peak - 100.0) / 3000.0 * 1e6);
    c.advanceTo(arrival / 4);
    EXPECT_NE(static_cast<std::uint32_t>(statusField(c, 13)) & kAccelerating, 0u);
    c.advanceTo(arrival - 1);
    EXPECT_TRUE(c.axisMoving(AxisId::X));
    c.advanceTo(arrival);
    EXPECT_EQ(c.position(AxisId::X), 100);
}

TEST(Motion, SeveralAxesInOneCommandMoveTogetherEachOnItsOwnProfile)
{
    Controller c;
    ASSERT_EQ(ask(c, "HSPD2000"), "OK");
    ASSERT_EQ(ask(c, "ACCEL0"), "OK");
    ASSERT_EQ(ask(c, "X1000Y-200U4000"), "OK");
    c.advanceTo(ms(100));
    EXPECT_EQ(c.position(AxisId::X), 200);
    EXPECT_EQ(c.position(AxisId::Y), -200);
    EXPECT_EQ(c.position(AxisId::Z), 0);
    c.advanceTo(seconds(2));
    EXPECT_EQ(c.position(AxisId::X), 1000);
    EXPECT_EQ(c.position(AxisId::U), 4000);
}

TEST(Motion, IncrementalMovesAddToThePosition)
{
    Controller c;
    ASSERT_EQ(ask(c, "INC"), "OK");
    ask(c, "X500");
    c.advanceTo(seconds(5));
    ask(c, "X-200");
    c.advanceTo(seconds(10));
    EXPECT_EQ(c.position(AxisId::X), 300);
    ASSERT_EQ(ask(c, "ABS"), "OK");
    ask(c, "X0");
    c.advanceTo(seconds(15));
    EXPECT_EQ(c.position(AxisId::X), 0);
}

TEST(Motion, AMoveOfAMovingAxisIsRefusedAndNoAxisOfTheCommandStarts)
{
    Controller c;
    ask(c, "X5000");
    EXPECT_EQ(ask(c, "Y100X100").front(), '?');
    c.advanceTo(seconds(1));
    EXPECT_FALSE(c.axisMoving(AxisId::Y));
}

TEST(Motion, PositionSetMovesTheCounterNotTheAxis)
{
    Controller c;
    EXPECT_EQ(ask(c, "PX=1000"), "OK");
    EXPECT_EQ(ask(c, "EU=-25"), "OK");
    EXPECT_EQ(c.position(AxisId::X), 1000);
    EXPECT_EQ(c.encoder(AxisId::U), -25);
    ask(c, "X1500");
    c.advanceTo(seconds(5));
    EXPECT_EQ(c.position(AxisId::X), 1500);
    EXPECT_EQ(c.encoder(AxisId::X), 500);
}

TEST(Motion, RunningIntoALimitStopsThereWithALimitErrorUntilCleared)
{
    Controller c;
    ask(c, "HSPD100000");
    ask(c, "X2000000");
    c.advanceTo(seconds(60));
    EXPECT_EQ(c.position(AxisId::X), 1'000'000);
    EXPECT_EQ(c.axisStatus(AxisId::X) & (kPlusLimit | kPlusLimitError), kPlusLimit | kPlusLimitError);
    EXPECT_EQ(ask(c, "X0").front(), '?');
    EXPECT_EQ(ask(c, "MECLEARX"), "OK");
    EXPECT_EQ(c.axisStatus(AxisId::X) & kPlusLimitError, 0u);
    EXPECT_EQ(ask(c, "X1000001").front(), '?') << "further into the active limit";
    ask(c, "MECLEARX");
    EXPECT_EQ(ask(c, "X0"), "OK");
}

TEST(Motion, AlarmInputStopsTheAxisAndHoldsAnAlarmErrorWhileActive)
{
    Controller c;
    ask(c, "X5000");
    c.advanceTo(seconds(1));
    c.setAlarmInput(AxisId::X, true);
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    EXPECT_EQ(c.axisStatus(AxisId::X) & (kAlarmInput | kAlarmError), kAlarmInput | kAlarmError);
    ask(c, "MECLEARX");
    EXPECT_NE(c.axisStatus(AxisId::X) & kAlarmError, 0u);
    c.setAlarmInput(AxisId::X, false);
    ask(c, "MECLEARX");
    EXPECT_EQ(c.axisStatus(AxisId::X) & kAlarmError, 0u);
}

TEST(Motion, StopHaltsAtOnceWhereTheAxisIs)
{
    Controller c;
    ask(c, "X10000");
    c.advanceTo(seconds(5));
    const auto where = c.position(AxisId::X);
    EXPECT_EQ(ask(c, "STOPX"), "OK");
    c.advanceTo(seconds(6));
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    EXPECT_EQ(c.position(AxisId::X), where);
}

TEST(Motion, RampStopDeceleratesToTheLowSpeedOverTheRampTime)
{
    Controller c;
    ask(c, "X10000");
    c.advanceTo(seconds(5));
    const auto where = c.position(AxisId::X);
    EXPECT_EQ(ask(c, "RSTOPX"), "OK");
    c.advanceTo(seconds(5.1));
    EXPECT_NE(c.axisStatus(AxisId::X) & kDecelerating, 0u);
    c.advanceTo(seconds(5.3));
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    // From 1000 down to 100 pulses/s in 0.3 s covers 165 pulses.
    EXPECT_EQ(c.position(AxisId::X), where + 165);
}

TEST(Motion, StopWithoutAnAxisStopsAllAndAbortStopsProgramsToo)
{
    Controller c;
    ask(c, "X5000Y5000");
    c.advanceTo(seconds(1));
    ask(c, "STOP");
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    EXPECT_FALSE(c.axisMoving(AxisId::Y));

    download(c, 1, {"INC", "WHILE 1", "X10", "WAITX", "ENDWHILE"});
    ASSERT_EQ(ask(c, "RUN1"), "OK");
    c.advanceTo(seconds(2));
    EXPECT_EQ(c.programState(1), ProgramState::Running);
    EXPECT_EQ(ask(c, "ABORT"), "OK");
    EXPECT_EQ(c.programState(1), ProgramState::Idle);
    EXPECT_FALSE(c.axisMoving(AxisId::X));
}

} // namespace
} // namespace marlune::sim::test
