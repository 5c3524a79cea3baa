#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <set>

namespace marlune::sim::test {
namespace {

class RefusedCommand : public ::testing::TestWithParam<const char*> {};

TEST_P(RefusedCommand, AnswersWithAQuestionMarkAndAReason)
{
    Controller c;
    const std::string before = ask(c, "???");
    const std::string reply = ask(c, GetParam());
    ASSERT_GT(reply.size(), 2u);
    EXPECT_EQ(reply.front(), '?');
    EXPECT_EQ(ask(c, "???"), before) << "a refused command changes nothing";
}

INSTANTIATE_TEST_SUITE_P(Controller, RefusedCommand,
                         ::testing::Values("FOO", "X", "X--100", "X12a", "XX100", "RUN", "RUN5", "RUN0", "HSPD0",
                                           "HSPDabc", "LSPD-1", "ACCEL70000", "DIO25=1", "DIO1=1", "DIO0", "I49",
                                           "I0=1", "V249=1", "V1=abc", "V1=99999999999", "I1=16777216", "I12=-1",
                                           "PRON=16", "PRON=x", "IPA=1.2.3", "IPA=1.2.3.256", "IPA=", "HOMEX", "STOPQ",
                                           "MECLEARXY", "AI3", "PAUSE1", "CONTINUE1", "CLEAR", "EOX=2", "PX=", "PX1",
                                           "LISTPROG9", "UPLOAD", "\x01\x02\xff", "EXIT"));

TEST(Commands, SettingsAreReadBareAndSetWithOrWithoutEquals)
{
    Controller c;
    EXPECT_EQ(ask(c, "HSPD"), "1000");
    EXPECT_EQ(ask(c, "HSPD2500"), "OK");
    EXPECT_EQ(ask(c, "LSPD=50"), "OK");
    EXPECT_EQ(ask(c, "EHSPD100"), "OK");
    EXPECT_EQ(ask(c, "HSPD"), "2500");
    EXPECT_EQ(ask(c, "LSPD"), "50");
    EXPECT_EQ(ask(c, "EHSPD"), "100");
    EXPECT_EQ(ask(c, "ACCEL"), "300");
}

TEST(Commands, SmallLettersAndBlanksAreAccepted)
{
    Controller c;
    EXPECT_EQ(ask(c, "hspd 1200"), "OK");
    EXPECT_EQ(ask(c, "Hspd"), "1200");
    EXPECT_EQ(ask(c, "v 3 = 9"), "OK");
    EXPECT_EQ(ask(c, "V3"), "9");
}

TEST(Commands, VariablesKeepTheirValues)
{
    Controller c;
    EXPECT_EQ(ask(c, "V248=-2147483648"), "OK");
    EXPECT_EQ(ask(c, "V248"), "-2147483648");
    EXPECT_EQ(ask(c, "I22=16777215"), "OK");
    EXPECT_EQ(ask(c, "I35=-5000"), "OK") << "soft limits may be negative";
    EXPECT_EQ(ask(c, "I35"), "-5000");
    EXPECT_EQ(c.iVariable(22), 16777215);
}

TEST(Commands, IpAddressIsReadAndSetAsText)
{
    Controller c;
    EXPECT_EQ(ask(c, "IPA"), "192.168.1.250");
    EXPECT_EQ(ask(c, "IPA=10.0.0.7"), "OK");
    EXPECT_EQ(ask(c, "IPA"), "10.0.0.7");
}

TEST(Commands, DigitalOutputsFollowTheDirectionWord)
{
    Controller c;
    ask(c, "I12=16");
    EXPECT_EQ(ask(c, "DIO5=1"), "OK");
    EXPECT_EQ(ask(c, "DIO5"), "1");
    EXPECT_EQ(ask(c, "DIO"), "16");
    ask(c, "I12=0");
    EXPECT_EQ(ask(c, "DIO5"), "0") << "an input shows its input level";
}

TEST(Commands, EnableAndClearOutputsAndTheJoystickFlag)
{
    Controller c;
    EXPECT_EQ(ask(c, "EOU=1"), "OK");
    EXPECT_EQ(ask(c, "COX=1"), "OK");
    EXPECT_EQ(ask(c, "EOU"), "1");
    EXPECT_EQ(statusField(c, 18) & 0xFF, 0x18);
    EXPECT_EQ(ask(c, "COX=0"), "OK");
    EXPECT_EQ(statusField(c, 18) & 0xFF, 0x08);
    EXPECT_EQ(ask(c, "JOYON"), "OK");
    EXPECT_EQ(statusField(c, 27), 1);
    EXPECT_EQ(ask(c, "JOYOFF"), "OK");
    EXPECT_EQ(statusField(c, 27), 0);
}

TEST(Commands, AnalogInputsMoveWithTheClockWithinTwelveBits)
{
    Controller c;
    std::set<std::string> seen;
    for (int t = 0; t < 20; ++t) {
        c.advanceTo(ms(t * 500));
        const int value = std::stoi(ask(c, "AI1"));
        EXPECT_GE(value, 0);
        EXPECT_LE(value, 4095);
        seen.insert(ask(c, "AI2"));
    }
    EXPECT_GT(seen.size(), 5u);
}

TEST(Commands, EmptyCommandGetsAnEmptyReply)
{
    Controller c;
    EXPECT_EQ(ask(c, ""), "");
    EXPECT_EQ(ask(c, "   "), "");
}

TEST(Commands, FailureModesSilenceOrGarbleTheReply)
{
    Controller c;
    c.failureModes().noReply = true;
    EXPECT_EQ(c.execute("???"), std::nullopt);
    c.failureModes().noReply = false;
    c.failureModes().garbageReply = true;
    const std::string reply = ask(c, "???");
    EXPECT_NE(reply.front(), '@');
    EXPECT_EQ(reply.find('\x04'), std::string::npos);
}

TEST(Commands, TheClockDoesNotGoBack)
{
    Controller c;
    c.advanceTo(seconds(5));
    c.advanceTo(seconds(1));
    EXPECT_EQ(c.now(), seconds(5));
}

} // namespace
} // namespace marlune::sim::test
