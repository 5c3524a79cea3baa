#include "sim_test_support.h"

#include <set>

namespace marlune::sim::test {
namespace {

TEST_P(Converses, AsWritten)
{
    Controller c;
    Play(c, GetParam().steps);
}

class RefusedCommand : public ::testing::TestWithParam<const char*> {};

TEST_P(RefusedCommand, AnswersWithAQuestionMarkAndAReason)
{
    Controller c;
    const std::string before = Ask(c, "???");
    const std::string reply = Ask(c, GetParam());
    ASSERT_GT(reply.size(), 2u);
    EXPECT_EQ(reply.front(), '?');
    EXPECT_EQ(Ask(c, "???"), before) << "a refused command changes nothing";
}

INSTANTIATE_TEST_SUITE_P(Controller, RefusedCommand,
                         ::testing::Values("FOO", "X", "X--100", "X12a", "XX100", "RUN", "RUN5", "RUN0", "HSPD0",
                                           "HSPDabc", "LSPD-1", "ACCEL70000", "DIO25=1", "DIO1=1", "DIO0", "I49",
                                           "I0=1", "V249=1", "V1=abc", "V1=99999999999", "I1=16777216", "I12=-1",
                                           "PRON=16", "PRON=x", "IPA=1.2.3", "IPA=1.2.3.256", "IPA=", "HOMEX", "STOPQ",
                                           "MECLEARXY", "AI3", "PAUSE1", "CONTINUE1", "CLEAR", "EOX=2", "PX=", "PX1",
                                           "LISTPROG9", "UPLOAD", "\x01\x02\xff", "EXIT", "HOMEQ+", "LHOMEX*", "ZHOME+",
                                           "HOMEXY+", "I48=7"));

// clang-format off
const Conversation kCommands[] = {
    {"SettingsAreReadBareAndSetWithOrWithoutEquals", {
        {"HSPD", "1000"}, {"HSPD2500"}, {"LSPD=50"}, {"EHSPD100"}, {"EACCEL7"}, {"HSPD", "2500"}, {"LSPD", "50"},
        {"EHSPD", "100"}, {"EACCEL", "7"}, {"ACCEL", "300"}, {"ELSPD-1", "?ELSPD takes 0 to 6000000"},
        {"ACCEL65001", "?ACCEL takes 0 to 65000"}}},
    {"SmallLettersAndBlanksAreAccepted", {{"hspd 1200"}, {"Hspd", "1200"}, {"v 3 = 9"}, {"V3", "9"}}},
    {"EmptyCommandGetsAnEmptyReply", {{"", ""}, {"   ", ""}}},
    {"TheClockDoesNotGoBack", {{"X10000"}, {"@5000"}, {"@1000"}, {"PX", "4865"}}},
    {"ControlBytesOfAnEchoedCommandAreShownEscaped", {{"\x04V\x1f", "?Unknown command \"\\x04V\\x1F\""}}},
    {"VariablesKeepTheirValues", {
        {"V248=-2147483648"}, {"V248", "-2147483648"}, {"I22=16777215"}, {"I22", "16777215"}, {"I35=-5000"},
        {"I35", "-5000"}}},
    {"IpAddressIsReadAndSetAsText", {{"IPA", "192.168.1.250"}, {"IPA=10.0.0.7"}, {"IPA", "10.0.0.7"}}},
    {"OutputsReadBackAndDigitalPointsFollowTheDirectionWord", {
        {"I12=16"}, {"DIO5=1"}, {"DIO5", "1"}, {"DIO", "16"}, {"I12=0"}, {"DIO5", "0"}, {"EOU=1"}, {"COX=1"},
        {"EOU", "1"}, {"COX", "1"}, {"COX=0"}, {"COX", "0"}, {"EOX", "0"}}},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Commands, Converses, ::testing::ValuesIn(kCommands), NameOf);

TEST(Commands, AnalogInputsMoveWithTheClockWithinTwelveBits)
{
    Controller c;
    std::set<std::string> seen;
    for (int t = 0; t < 20; ++t) {
        c.advanceTo(Ms(t * 500));
        const int value = std::stoi(Ask(c, "AI1"));
        EXPECT_TRUE(value >= 0 && value <= 4095) << value;
        seen.insert(Ask(c, "AI2"));
    }
    EXPECT_GT(seen.size(), 5u);
}

// The 28 fields: position, encoder, speed and status word of X, Y, Z, U; the digital points;
// the enable and clear outputs with the index signals; state and line of programs 1 to 4;
// the joystick; a last 0.
TEST(StatusRecord, FieldsSitInTheirPlaces)
{
    Controller c;
    // Points 4 and 5 are outputs: the input level of 4 does not show.
    Play(c, {{"PX=11"}, {"PU=-44"}, {"EZ=33"}, {"I12=24"}, {"DIO5=1"}, {"EOX=1"}, {"COY=1"}, {"JOYON"}});
    c.setDigitalInput(1, true);
    c.setDigitalInput(4, true);
    Play(c, {{"OPENPROG3"}, {"V1=1"}, {"DELAY 5000"}, {"CLOSE"}, {"RUN3"}});
    c.advanceTo(Ms(10));
    // All axes rest in position (128) on an index pulse (0xF00), X enabled (1), Y cleared (0x20).
    EXPECT_EQ(Ask(c, "???"), "@11,0,0,-44,0,0,33,0,0,0,0,0,128,128,128,128,17.3873,0,0,1,0,0,0,2,0,1,0.");
    Play(c, {{"COY=0"}, {"EOU=1"}, {"JOYOFF"}});
    EXPECT_EQ(StatusField(c, 18), 0xF09);
    EXPECT_EQ(StatusField(c, 27), 0);
}

} // namespace
} // namespace marlune::sim::test
