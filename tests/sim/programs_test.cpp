#include "sim_test_support.h"

namespace marlune::sim::test {
namespace {

// PSTAT answers: state (0 idle, 1 running, 2 error, 3 paused, 4 warning), current line,
// open for writing, number of lines. A program takes one line a millisecond. A write of the
// EEPROM takes 400 ms, during which the controller answers nothing.
// clang-format off
const Conversation kPrograms[] = {
    {"DownloadedLinesComeBackByPstatUploadAndListAndWereNotCarriedOut", {
        {"OPENPROG2"}, {"V10=5000"}, {"X1000"}, {"WAITX"}, {"V11=1"}, {"CLOSE"}, {"PSTAT2", "0,0,0,4"},
        {"UPLOAD2", "V10=5000"}, {"UPLOAD2", "X1000"}, {"PSTAT2", "0,0,0,4"}, {"UPLOAD2", "V10=5000"},
        {"UPLOAD2", "X1000"}, {"UPLOAD2", "WAITX"}, {"UPLOAD2", "V11=1"}, {"UPLOAD2", "END"},
        {"LISTPROG2", "V10=5000\r\nX1000\r\nWAITX\r\nV11=1"}, {"listprog2", "V10=5000\r\nX1000\r\nWAITX\r\nV11=1"},
        {"PX", "0"}, {"V10", "0"}, {"PSTAT3", "0,0,0,0"}, {"UPLOAD3", "END"}}},
    {"StatusAndListingStillAnswerWhileAProgramIsOpen", {
        {"OPENPROG4"}, {"???", "@*"}, {"PSTAT4", "0,0,1,0"}, {"LISTPROG4", ""}, {"open prog 4"}, {"X 100 "},
        {"LISTPROG4", "X 100 "}, {"PX", "OK"}, {"CLOSE"}, {"LISTPROG4", "X 100 \r\nPX"}, {"PX", "0"}}},
    {"ARunningProgramCannotBeOpened", {
        {"OPENPROG1"}, {"DELAY 10000"}, {"CLOSE"}, {"RUN1"}, {"OPENPROG1", "?*"}, {"QUIT1"}, {"OPENPROG1"}}},
    {"ProjectNameKeepsBlanksAndQuotesAndComesBackBetweenQuotes", {
        {"PROJ", "\"\""}, {"PROJ=\"my \"best\" motion.prj\""}, {"PROJ", "\"my \"best\" motion.prj\""}, {"proj=\"\""},
        {"PROJ", "\"\""}}},
    {"ProgramSetIsUnknownUntilStored", {
        {"PRON", "?*"}, {"PRON=11"}, {"PRON", "11"}, {"PRON=16", "?*"}, {"PRON", "11"}}},
    {"StoreIsSilentWhileItWritesThenCountsTheWrite", {
        {"I48", "0"}, {"I48=7", "?*"}, {"STORE"}, {"V1", "<none>"}, {"@399"}, {"$", "<none>"}, {"@400"}, {"$"},
        {"I48", "1"}, {"STORE"}, {"@800"}, {"I48", "2"}}},
    {"LoadBringsBackProgramsVariablesAndTheProjectAndIsNoWrite", {
        {"OPENPROG1"}, {"V1=1"}, {"CLOSE"}, {"V5=42"}, {"I12=255"}, {"PROJ=\"cell 4\""}, {"PRON=1"}, {"STORE"},
        {"@1000"}, {"OPENPROG1"}, {"CLEAR"}, {"V1=2"}, {"CLOSE"}, {"V5=0"}, {"I12=0"}, {"PROJ=\"other\""}, {"LOAD"},
        {"LISTPROG1", "V1=1"}, {"V5", "42"}, {"I12", "255"}, {"PROJ", "\"cell 4\""}, {"PRON", "1"}, {"I48", "1"}}},
    {"ALoopProgramRunsItsRoundsAndEnds", {
        {"I12=1"}, {"OPENPROG1"}, {"INC"}, {"V1=0"}, {"WHILE V1<3"}, {"X100"}, {"WAITX"}, {"V1=V1+1"}, {"ENDWHILE"},
        {"DIO1=1"}, {"END"}, {"V1=99"}, {"CLOSE"}, {"RUN1"}, {"@100"}, {"PSTAT1", "1,5,0,10"}, {"@10000"},
        {"PSTAT1", "0,0,0,10"}, {"V1", "3"}, {"PX", "300"}, {"DIO", "1"}}},
    {"TheCurrentLineMovesOneLineAMillisecond", {
        {"OPENPROG2"}, {"V1=1"}, {"V2=2"}, {"V3=3"}, {"DELAY 1000"}, {"CLOSE"}, {"RUN2"}, {"PSTAT2", "1,1,0,4"}, {"@1"},
        {"PSTAT2", "1,2,0,4"}, {"@2"}, {"PSTAT2", "1,3,0,4"}, {"@3"}, {"PSTAT2", "1,4,0,4"}, {"@4"},
        {"PSTAT2", "1,4,0,4"}}},
    {"DelayWaitsTheGivenMilliseconds", {
        {"OPENPROG1"}, {"V9=250*2"}, {"DELAY=V9"}, {"V2=1"}, {"CLOSE"}, {"RUN1"}, {"@500"}, {"V2", "0"}, {"@502"},
        {"V2", "1"}}},
    {"IfElseTakesOneBranch", {
        {"OPENPROG1"}, {"V1=7"}, {"IF V1>5"}, {"V2=1"}, {"ELSE"}, {"V2=2"}, {"ENDIF"}, {"IF V1==3"}, {"V3=1"}, {"ELSE"},
        {"V3=2"}, {"ENDIF"}, {"CLOSE"}, {"RUN1"}, {"@1000"}, {"V2", "1"}, {"V3", "2"}}},
    {"ProgramsReadPositionsPointsAndVariables", {
        {"PX=1234"}, {"I12=2"}, {"DIO2=1"}, {"OPENPROG1"}, {"V1=PX-34"}, {"V2=DIO2*10+DIO3"}, {"V3=(V1+V2)/4"},
        {"V4=-V3"}, {"CLOSE"}, {"RUN1"}, {"@1000"}, {"V1", "1200"}, {"V2", "10"}, {"V3", "302"}, {"V4", "-302"}}},
    {"MovesTakeTargetsFromVariables", {
        {"OPENPROG1"}, {"V5=-700"}, {"ABS"}, {"XV5Y-V5"}, {"WAIT"}, {"V6=PY"}, {"CLOSE"}, {"RUN1"}, {"@10000"},
        {"PX", "-700"}, {"V6", "700"}}},
    {"ARunTimeFaultStopsTheProgramWithAMessage", {
        {"OPENPROG4"}, {"V1=0"}, {"V2=10/V1"}, {"V3=1"}, {"CLOSE"}, {"RUN4"}, {"@1000"}, {"PSTAT4", "2,2,0,3"},
        {"PEMSG4", "Line 2: division by zero"}, {"V3", "0"}, {"PECLEAR4"}, {"PSTAT4", "0,0,0,3"},
        {"PEMSG4", "No error"}}},
    {"AProgramThatDoesNotCompileIsRefusedAtRun", {
        {"OPENPROG1"}, {"V1=1"}, {"WHILE V1<3"}, {"FROB"}, {"ENDWHILE"}, {"CLOSE"},
        {"RUN1", "?Program 1 line 3: unknown command \"FROB\""}, {"PSTAT1", "2,3,0,4"}}},
    {"UnbalancedBlocksAndCommandsOfTheCommandLineAreRefused", {
        {"OPENPROG1"}, {"WHILE 1"}, {"OPENPROG2"}, {"ENDWHILE"}, {"OPENPROG3"}, {"IF 1"}, {"ENDWHILE"}, {"OPENPROG4"},
        {"ELSE"}, {"CLOSE"}, {"RUN1", "?Program 1 line 1: WHILE without ENDWHILE"},
        {"RUN2", "?Program 2 line 1: ENDWHILE without WHILE"}, {"RUN3", "?Program 3 line 2: ENDWHILE without WHILE"},
        {"RUN4", "?Program 4 line 1: ELSE without IF"}, {"OPENPROG1"}, {"CLEAR"}, {"STORE"}, {"CLOSE"},
        {"RUN1", "?Program 1 line 1: \"STORE\" cannot be used in a program"}}},
    {"ADeviceFaultIsAWarningAndTheProgramGoesOn", {
        {"OPENPROG1"}, {"DIO5=1"}, {"DELAY 100"}, {"V1=1"}, {"CLOSE"}, {"RUN1"}, {"@10"}, {"PSTAT1", "4,2,0,3"},
        {"PEMSG1", "Line 1: DIO5 is an input (see I12)"}, {"@1000"}, {"V1", "1"}, {"PSTAT1", "0,0,0,3"}}},
    {"PauseHoldsTheProgramAndContinueResumesIt", {
        {"OPENPROG1"}, {"V1=0"}, {"WHILE V1<1000"}, {"V1=V1+1"}, {"ENDWHILE"}, {"CLOSE"}, {"RUN1"}, {"@30"}, {"PAUSE1"},
        {"V1", "10"}, {"@500"}, {"V1", "10"}, {"PSTAT1", "3,4,0,4"}, {"RUN1", "?*"}, {"CONTINUE1"}, {"@10000"},
        {"V1", "1000"}, {"CONTINUE1", "?*"}}},
    {"QuitStopsAProgramAndFourProgramsRunSideBySide", {
        {"OPENPROG1"}, {"WHILE 1"}, {"V1=V1+1"}, {"ENDWHILE"}, {"OPENPROG3"}, {"WHILE 1"}, {"V3=V3+1"}, {"ENDWHILE"},
        {"OPENPROG2"}, {"WHILE 1"}, {"V2=V2+1"}, {"ENDWHILE"}, {"OPENPROG4"}, {"V4=1"}, {"QUIT2"}, {"DELAY 100"},
        {"QUIT4"}, {"V4=2"}, {"CLOSE"}, {"RUN1"}, {"RUN2"}, {"RUN3"}, {"RUN4"}, {"@300"}, {"PSTAT1", "1,*"},
        {"PSTAT2", "0,0,0,3"}, {"PSTAT4", "0,0,0,5"}, {"V4", "1"}, {"V1", "100"}, {"V3", "100"}, {"QUIT1"}, {"@600"},
        {"V1", "100"}, {"V3", "200"}}},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Programs, Converses, ::testing::ValuesIn(kPrograms), NameOf);

TEST(ProgramStorage, AProgramIsFullAfterAThousandLines)
{
    Controller c;
    Ask(c, "OPENPROG1");
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(Ask(c, "V1=1"), "OK");
    EXPECT_EQ(Ask(c, "V1=1").front(), '?');
}

TEST(Eeprom, PowerCycleRestoresTheStoredStateAndStartsWhatI1Names)
{
    Controller c;
    // I1 runs program 2 at power-up with the joystick on; I12 and I13 make point 3 an output, on at power-up.
    Play(c, {{"OPENPROG2"}, {"V7=V7+1"}, {"DIO3=1"}, {"CLOSE"}, {"I1=18"}, {"I12=4"}, {"I13=4"}, {"V7=10"}});
    Play(c, {{"STORE"}, {"@1000"}, {"V7=0"}});
    c.powerCycle();
    EXPECT_EQ(c.programState(2), ProgramState::Running);
    EXPECT_EQ(c.digitalWord(), 4u);
    EXPECT_EQ(StatusField(c, 27), 1);
    c.advanceTo(Seconds(2));
    EXPECT_EQ(c.vVariable(7), 11);
}

TEST(Interpreter, TheSameCommandsAtTheSameTimesGiveTheSameReplies)
{
    const auto session = [] {
        Controller c;
        Play(c, {{"OPENPROG1"}, {"INC"}, {"WHILE V1<20"}, {"X37Y-11"}, {"WAIT"}, {"V1=V1+1"}, {"DELAY V1*3"}});
        Play(c, {{"ENDWHILE"}, {"CLOSE"}, {"RUN1"}});
        std::vector<std::string> replies;
        for (int t = 1; t <= 60; ++t) {
            c.advanceTo(Ms(t * 97));
            replies.push_back(Ask(c, "???"));
            replies.push_back(Ask(c, "AI1") + "," + Ask(c, "AI2"));
        }
        return replies;
    };
    EXPECT_EQ(session(), session());
}

} // namespace
} // namespace marlune::sim::test
