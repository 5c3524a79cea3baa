#include "sim_test_support.h"

namespace marlune::sim::test {
namespace {

TEST(StatusRecord, HasTwentyEightFieldsWithTheirTerminators)
{
    Controller c;
    const std::string record = Ask(c, "???");
    ASSERT_EQ(record.front(), '@');
    std::string terminators;
    const auto fields = StatusFields(record, &terminators);
    ASSERT_EQ(fields.size(), 28u);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const bool endsWithPoint = i == 16 || i == 27;
        EXPECT_EQ(terminators[i], endsWithPoint ? '.' : ',') << "field " << i + 1;
        EXPECT_FALSE(fields[i].empty()) << "field " << i + 1;
    }
    EXPECT_EQ(record.back(), '.');
}

TEST(StatusRecord, FieldsSitInTheirPlaces)
{
    Controller c;
    Ask(c, "PX=11");
    Ask(c, "PU=-44");
    Ask(c, "EZ=33");
    Ask(c, "I12=24"); // points 4 and 5 are outputs
    Ask(c, "DIO5=1");
    c.setDigitalInput(1, true);
    c.setDigitalInput(4, true); // an output: its input level does not show
    Ask(c, "EOX=1");
    Ask(c, "COY=1");
    Ask(c, "JOYON");
    Download(c, 3, {"V1=1", "DELAY 5000"});
    Ask(c, "RUN3");
    c.advanceTo(Ms(10));
    const auto f = StatusFields(Ask(c, "???"));
    EXPECT_EQ(f[0], "11");
    EXPECT_EQ(f[3], "-44");
    EXPECT_EQ(f[6], "33");
    EXPECT_EQ(f[12], "128") << "X rests: in position";
    EXPECT_EQ(f[16], "17") << "point 1 in, point 5 out";
    // Enable X, clear Y, and the index pulses that all axes sit on at power-up.
    EXPECT_EQ(f[17], std::to_string(0x001 | 0x020 | 0xF00));
    EXPECT_EQ(f[20], "1") << "program 3 runs";
    EXPECT_EQ(f[24], "2") << "program 3 waits on its second line";
    EXPECT_EQ(f[18], "0");
    EXPECT_EQ(f[26], "1");
    EXPECT_EQ(f[27], "0");
}

TEST(StatusRecord, ShowsTheEnableAndClearOutputsAndTheJoystick)
{
    Controller c;
    EXPECT_EQ(Ask(c, "EOU=1"), "OK");
    EXPECT_EQ(Ask(c, "COX=1"), "OK");
    EXPECT_EQ(Ask(c, "EOU"), "1");
    EXPECT_EQ(StatusField(c, 18) & 0xFF, 0x18);
    EXPECT_EQ(Ask(c, "COX=0"), "OK");
    EXPECT_EQ(StatusField(c, 18) & 0xFF, 0x08);
    EXPECT_EQ(Ask(c, "JOYON"), "OK");
    EXPECT_EQ(StatusField(c, 27), 1);
    EXPECT_EQ(Ask(c, "JOYOFF"), "OK");
    EXPECT_EQ(StatusField(c, 27), 0);
}

} // namespace
} // namespace marlune::sim::test
