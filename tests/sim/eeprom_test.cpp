#include "sim_test_support.h"

#include <gtest/gtest.h>

namespace marlune::sim::test {
namespace {

TEST(Eeprom, StoreIsSilentWhileItWritesThenCountsTheWrite)
{
    Controller c;
    EXPECT_EQ(ask(c, "I48"), "0");
    EXPECT_EQ(ask(c, "STORE"), "OK");
    EXPECT_TRUE(c.eepromBusy());
    EXPECT_EQ(c.execute("V1"), std::nullopt);
    c.advanceTo(Eeprom::kWriteMicros - 1);
    EXPECT_EQ(c.execute("$"), std::nullopt);
    c.advanceTo(Eeprom::kWriteMicros);
    EXPECT_EQ(ask(c, "$").front(), 'O');
    EXPECT_EQ(ask(c, "I48"), "1");
    ask(c, "STORE");
    c.advanceTo(2 * Eeprom::kWriteMicros);
    EXPECT_EQ(ask(c, "I48"), "2");
    EXPECT_EQ(c.storeCount(), 2);
}

TEST(Eeprom, LoadBringsBackProgramsVariablesAndTheProject)
{
    Controller c;
    download(c, 1, {"V1=1"});
    ask(c, "V5=42");
    ask(c, "I12=255");
    ask(c, "PROJ=\"cell 4\"");
    ask(c, "PRON=1");
    ask(c, "STORE");
    c.advanceTo(seconds(1));
    download(c, 1, {"V1=2", "V1=3"});
    ask(c, "V5=0");
    ask(c, "I12=0");
    ask(c, "PROJ=\"other\"");
    EXPECT_EQ(ask(c, "LOAD"), "OK");
    EXPECT_EQ(c.programLines(1), std::vector<std::string>{"V1=1"});
    EXPECT_EQ(ask(c, "V5"), "42");
    EXPECT_EQ(ask(c, "I12"), "255");
    EXPECT_EQ(ask(c, "PROJ"), "\"cell 4\"");
    EXPECT_EQ(ask(c, "PRON"), "1");
    EXPECT_EQ(ask(c, "I48"), "1") << "loading does not count as a write";
}

TEST(Eeprom, TheWriteCounterCannotBeSet)
{
    Controller c;
    EXPECT_EQ(ask(c, "I48=7").front(), '?');
    EXPECT_EQ(ask(c, "I48"), "0");
}

TEST(Eeprom, PowerCycleRestoresTheStoredStateAndStartsAutoRunPrograms)
{
    Controller c;
    download(c, 2, {"V7=V7+1", "DIO3=1"});
    ask(c, "I1=2");  // run program 2 at power-up
    ask(c, "I12=4"); // point 3 is an output
    ask(c, "I13=4"); // and is on at power-up
    ask(c, "V7=10");
    ask(c, "STORE");
    c.advanceTo(seconds(1));
    ask(c, "V7=0");
    c.powerCycle();
    EXPECT_EQ(c.programState(2), ProgramState::Running);
    EXPECT_EQ(c.digitalWord(), 4u);
    c.advanceTo(seconds(2));
    EXPECT_EQ(c.vVariable(7), 11);
}

TEST(Eeprom, JoystickBitOfI1SwitchesTheJoystickOnAtPowerUp)
{
    Controller c;
    ask(c, "I1=16");
    ask(c, "STORE");
    c.advanceTo(seconds(1));
    c.powerCycle();
    EXPECT_EQ(statusField(c, 27), 1);
}

} // namespace
} // namespace marlune::sim::test
