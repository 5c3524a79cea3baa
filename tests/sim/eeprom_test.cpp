#include "sim_test_support.h"

namespace marlune::sim::test {
namespace {

// A write of the EEPROM takes 400 ms, during which the controller answers nothing.
// clang-format off
const Conversation kEeprom[] = {
    {"StoreIsSilentWhileItWritesThenCountsTheWrite", {
        {"I48", "0"}, {"I48=7", "?*"}, {"STORE"}, {"V1", "<none>"}, {"@399"}, {"$", "<none>"}, {"@400"}, {"$"},
        {"I48", "1"}, {"STORE"}, {"@800"}, {"I48", "2"}}},
    {"LoadBringsBackProgramsVariablesAndTheProjectAndIsNoWrite", {
        {"OPENPROG1"}, {"V1=1"}, {"CLOSE"}, {"V5=42"}, {"I12=255"}, {"PROJ=\"cell 4\""}, {"PRON=1"}, {"STORE"},
        {"@1000"}, {"OPENPROG1"}, {"CLEAR"}, {"V1=2"}, {"CLOSE"}, {"V5=0"}, {"I12=0"}, {"PROJ=\"other\""}, {"LOAD"},
        {"LISTPROG1", "V1=1"}, {"V5", "42"}, {"I12", "255"}, {"PROJ", "\"cell 4\""}, {"PRON", "1"}, {"I48", "1"}}},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Eeprom, Converses, ::testing::ValuesIn(kEeprom), NameOf);

TEST(Eeprom, PowerCycleRestoresTheStoredStateAndStartsWhatI1Names)
{
    Controller c;
    Download(c, 2, {"V7=V7+1", "DIO3=1"});
    Ask(c, "I1=18"); // run program 2 at power-up, joystick on
    Ask(c, "I12=4"); // point 3 is an output
    Ask(c, "I13=4"); // and is on at power-up
    Ask(c, "V7=10");
    Ask(c, "STORE");
    c.advanceTo(Seconds(1));
    Ask(c, "V7=0");
    c.powerCycle();
    EXPECT_EQ(c.programState(2), ProgramState::Running);
    EXPECT_EQ(c.digitalWord(), 4u);
    EXPECT_EQ(StatusField(c, 27), 1);
    c.advanceTo(Seconds(2));
    EXPECT_EQ(c.vVariable(7), 11);
}

} // namespace
} // namespace marlune::sim::test
