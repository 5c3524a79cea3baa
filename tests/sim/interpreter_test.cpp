#include "sim_test_support.h"

namespace marlune::sim::test {
namespace {

// PSTAT answers: state (0 idle, 1 running, 2 error, 3 paused, 4 warning), current line,
// open for writing, number of lines. A program takes one line a millisecond.
// clang-format off
const Conversation kPrograms[] = {
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
INSTANTIATE_TEST_SUITE_P(Interpreter, Converses, ::testing::ValuesIn(kPrograms), NameOf);

TEST(Interpreter, ProgramsReadPositionsInputsAndVariables)
{
    Controller c;
    Ask(c, "PX=1234");
    c.setDigitalInput(2, true);
    Download(c, 1, {"V1=PX-34", "V2=DIO2*10+DIO3", "V3=(V1+V2)/4", "V4=-V3"});
    Ask(c, "RUN1");
    c.advanceTo(Seconds(1));
    EXPECT_EQ(c.vVariable(1), 1200);
    EXPECT_EQ(c.vVariable(2), 10);
    EXPECT_EQ(c.vVariable(3), 302);
    EXPECT_EQ(c.vVariable(4), -302);
}

TEST(Interpreter, TheSameCommandsAtTheSameTimesGiveTheSameReplies)
{
    const auto session = [] {
        Controller c;
        Download(c, 1, {"INC", "WHILE V1<20", "X37Y-11", "WAIT", "V1=V1+1", "DELAY V1*3", "ENDWHILE"});
        Ask(c, "RUN1");
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
