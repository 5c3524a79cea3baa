#include "sim_test_support.h"

namespace marlune::sim::test {
namespace {

using namespace axis_status;

struct HomingCase {
    const char* command;
    std::uint32_t bitsAfter; // switch and error bits expected once the axis rests
    bool counterZeroed;
    std::int64_t positionIfNotZeroed;
};

class Homing : public ::testing::TestWithParam<HomingCase> {};

// The switches sit at fixed places of the travel: home switch 10000-10999,
// limits at ±1000000, an index pulse every 4000 pulses; the axes start at 0.
TEST_P(Homing, FindsItsSwitchAndSetsTheCounterToZero)
{
    Controller c;
    Ask(c, "HSPD200000");
    Ask(c, "PX=777");
    ASSERT_EQ(Ask(c, GetParam().command), "OK");
    c.advanceTo(Ms(1));
    EXPECT_TRUE(c.axisMoving(AxisId::X));
    c.advanceTo(Seconds(60));
    EXPECT_FALSE(c.axisMoving(AxisId::X));
    const std::uint32_t watched = kHomeSwitch | kPlusLimit | kMinusLimit | kPlusLimitError | kMinusLimitError;
    EXPECT_EQ(c.axisStatus(AxisId::X) & watched, GetParam().bitsAfter);
    if (GetParam().counterZeroed) {
        EXPECT_EQ(c.position(AxisId::X), 0);
        EXPECT_EQ(c.encoder(AxisId::X), 0);
    } else {
        EXPECT_EQ(c.position(AxisId::X), GetParam().positionIfNotZeroed);
    }
}

INSTANTIATE_TEST_SUITE_P(
        ThreeModes, Homing,
        ::testing::Values(HomingCase{"HOMEX+", kHomeSwitch, true, 0},
                          // The home switch lies behind: the search ends on the limit, with an error.
                          HomingCase{"HOMEX-", kMinusLimit | kMinusLimitError, false, -1'000'000 + 777},
                          HomingCase{"LHOMEX+", kPlusLimit, true, 0}, HomingCase{"LHOMEX-", kMinusLimit, true, 0},
                          HomingCase{"ZHOMEX+", 0, true, 0}, HomingCase{"ZHOMEX-", 0, true, 0}));

TEST(Homing, IndexHomingFromAPulseGoesOnToTheNextOne)
{
    Controller c;
    Ask(c, "PZ=55");
    Ask(c, "ZHOMEY+");
    c.advanceTo(Seconds(20));
    Ask(c, "ZHOMEY+");
    c.advanceTo(Seconds(40));
    EXPECT_EQ(Ask(c, "PY"), "0");
    // The index signal shows in the output and index word: bit 8 plus the axis.
    EXPECT_NE(StatusField(c, 18) & 0x200, 0);
    // Two turns of travel: 2000 pulses more reach the home switch at 10000.
    Ask(c, "Y2000");
    c.advanceTo(Seconds(60));
    EXPECT_NE(c.axisStatus(AxisId::Y) & kHomeSwitch, 0u);
    EXPECT_EQ(c.position(AxisId::Z), 55) << "homing leaves the other axes alone";
}

} // namespace
} // namespace marlune::sim::test
