#include "sim_test_support.h"

#include <gtest/gtest.h>

namespace marlune::sim::test {
namespace {

TEST(Interpreter, ALoopProgramRunsItsRoundsAndEnds)
{
    Controller c;
    ask(c, "I12=1");
    download(c, 1, {"INC", "V1=0", "WHILE V1<3", "X100", "WAITX", "V1=V1+1", "ENDWHILE", "DIO1=1", "END", "V1=99"});
    ASSERT_EQ(ask(c, "RUN1"), "OK");
    c.advanceTo(ms(100));
    EXPECT_EQ(c.programState(1), ProgramState::Running);
    EXPECT_EQ(c.programLine(1), 5) << "waiting for X";
    c.advanceTo(seconds(10));
    EXPECT_EQ(c.programState(1), ProgramState::Idle);
    EXPECT_EQ(c.programLine(1), 0);
    EXPECT_EQ(c.vVariable(1), 3);
    EXPECT_EQ(c.position(AxisId::X), 300);
    EXPECT_EQ(c.digitalWord(), 1u);
}

TEST(Interpreter, TheCurrentLineMovesOneLineAMillisecond)
{
    Controller c;
    download(c, 2, {"V1=1", "V2=2", "V3=3", "DELAY 1000"});
    ask(c, "RUN2");
    std::vector<int> lines;
    for (int t = 0; t <= 4; ++t) {
        c.advanceTo(ms(t));
        lines.push_back(c.programLine(2));
    }
    EXPECT_EQ(lines, (std::vector<int>{1, 2, 3, 4, 4}));
}

TEST(Interpreter, DelayWaitsTheGivenMilliseconds)
{
    Controller c;
    download(c, 1, {"V9=250*2", "DELAY=V9", "V2=1"});
    ask(c, "RUN1");
    c.advanceTo(ms(500));
    EXPECT_EQ(c.vVariable(2), 0);
    c.advanceTo(ms(502));
    EXPECT_EQ(c.vVariable(2), 1);
}

TEST(Interpreter, IfElseTakesOneBranch)
{
    Controller c;
    download(c, 1, {"V1=7", "IF V1>5", "V2=1", "ELSE", "V2=2", "ENDIF", "IF V1==3", "V3=1", "ELSE", "V3=2", "ENDIF"});
    ask(c, "RUN1");
    c.advanceTo(seconds(1));
    EXPECT_EQ(c.vVariable(2), 1);
    EXPECT_EQ(c.vVariable(3), 2);
}

TEST(Interpreter, ProgramsReadPositionsInputsAndVariables)
{
    Controller c;
    ask(c, "PX=1234");
    c.setDigitalInput(2, true);
    download(c, 1, {"V1=PX-34", "V2=DIO2*10+DIO3", "V3=(V1+V2)/4", "V4=-V3"});
    ask(c, "RUN1");
    c.advanceTo(seconds(1));
    EXPECT_EQ(c.vVariable(1), 1200);
    EXPECT_EQ(c.vVariable(2), 10);
    EXPECT_EQ(c.vVariable(3), 302);
    EXPECT_EQ(c.vVariable(4), -302);
}

TEST(Interpreter, MovesTakeTargetsFromVariables)
{
    Controller c;
    download(c, 1, {"V5=-700", "ABS", "XV5Y-V5", "WAIT", "V6=PY"});
    ask(c, "RUN1");
    c.advanceTo(seconds(10));
    EXPECT_EQ(c.position(AxisId::X), -700);
    EXPECT_EQ(c.vVariable(6), 700);
}

TEST(Interpreter, ARunTimeFaultStopsTheProgramWithAMessage)
{
    Controller c;
    download(c, 4, {"V1=0", "V2=10/V1", "V3=1"});
    ask(c, "RUN4");
    c.advanceTo(seconds(1));
    EXPECT_EQ(c.programState(4), ProgramState::Errored);
    EXPECT_EQ(c.programLine(4), 2);
    EXPECT_EQ(ask(c, "PEMSG4"), "Line 2: division by zero");
    EXPECT_EQ(c.vVariable(3), 0);
    EXPECT_EQ(ask(c, "PECLEAR4"), "OK");
    EXPECT_EQ(c.programState(4), ProgramState::Idle);
    EXPECT_EQ(ask(c, "PEMSG4"), "No error");
}

TEST(Interpreter, AProgramThatDoesNotCompileIsRefusedAtRun)
{
    Controller c;
    download(c, 1, {"V1=1", "WHILE V1<3", "FROB", "ENDWHILE"});
    const std::string reply = ask(c, "RUN1");
    EXPECT_EQ(reply.front(), '?');
    EXPECT_NE(reply.find("line 3"), std::string::npos) << reply;
    EXPECT_EQ(c.programState(1), ProgramState::Errored);
    EXPECT_EQ(c.programLine(1), 3);
}

TEST(Interpreter, UnbalancedBlocksAreRefused)
{
    for (const auto& lines : {std::vector<std::string_view>{"WHILE 1"}, std::vector<std::string_view>{"ENDWHILE"},
                              std::vector<std::string_view>{"IF 1", "ENDWHILE"}, std::vector<std::string_view>{"ELSE"},
                              std::vector<std::string_view>{"STORE"}}) {
        Controller c;
        ask(c, "OPENPROG1");
        for (const auto line : lines)
            ask(c, line);
        ask(c, "CLOSE");
        EXPECT_EQ(ask(c, "RUN1").front(), '?') << lines.front();
    }
}

TEST(Interpreter, ADeviceFaultIsAWarningAndTheProgramGoesOn)
{
    Controller c;
    download(c, 1, {"DIO5=1", "DELAY 100", "V1=1"});
    ask(c, "RUN1");
    c.advanceTo(ms(10));
    EXPECT_EQ(c.programState(1), ProgramState::Warning);
    EXPECT_NE(ask(c, "PEMSG1").find("input"), std::string::npos);
    c.advanceTo(seconds(1));
    EXPECT_EQ(c.vVariable(1), 1);
    EXPECT_EQ(c.programState(1), ProgramState::Idle);
}

TEST(Interpreter, PauseHoldsTheProgramAndContinueResumesIt)
{
    Controller c;
    download(c, 1, {"V1=0", "WHILE V1<1000", "V1=V1+1", "ENDWHILE"});
    ask(c, "RUN1");
    c.advanceTo(ms(30));
    EXPECT_EQ(ask(c, "PAUSE1"), "OK");
    const auto held = c.vVariable(1);
    c.advanceTo(ms(500));
    EXPECT_EQ(c.vVariable(1), held);
    EXPECT_EQ(c.programState(1), ProgramState::Paused);
    EXPECT_EQ(ask(c, "RUN1").front(), '?');
    EXPECT_EQ(ask(c, "CONTINUE1"), "OK");
    c.advanceTo(seconds(10));
    EXPECT_EQ(c.vVariable(1), 1000);
    EXPECT_EQ(ask(c, "CONTINUE1").front(), '?');
}

TEST(Interpreter, QuitStopsAProgramAndFourProgramsRunSideBySide)
{
    Controller c;
    download(c, 1, {"WHILE 1", "V1=V1+1", "ENDWHILE"});
    download(c, 2, {"WHILE 1", "V2=V2+1", "ENDWHILE"});
    download(c, 3, {"WHILE 1", "V3=V3+1", "ENDWHILE"});
    download(c, 4, {"V4=1", "QUIT2", "DELAY 100", "QUIT4", "V4=2"});
    for (const char* run : {"RUN1", "RUN2", "RUN3", "RUN4"})
        ASSERT_EQ(ask(c, run), "OK");
    c.advanceTo(ms(300));
    EXPECT_EQ(c.programState(1), ProgramState::Running);
    EXPECT_EQ(c.programState(2), ProgramState::Idle);
    EXPECT_EQ(c.programState(4), ProgramState::Idle) << "a program may quit itself";
    EXPECT_EQ(c.vVariable(4), 1);
    EXPECT_EQ(c.vVariable(1), c.vVariable(3));
    EXPECT_EQ(ask(c, "QUIT1"), "OK");
    const auto v1 = c.vVariable(1);
    c.advanceTo(ms(600));
    EXPECT_EQ(c.vVariable(1), v1);
    EXPECT_GT(c.vVariable(3), v1);
}

TEST(Interpreter, TheSameCommandsAtTheSameTimesGiveTheSameReplies)
{
    const auto session = [] {
        Controller c;
        download(c, 1, {"INC", "WHILE V1<20", "X37Y-11", "WAIT", "V1=V1+1", "DELAY V1*3", "ENDWHILE"});
        ask(c, "RUN1");
        std::vector<std::string> replies;
        for (int t = 1; t <= 60; ++t) {
            c.advanceTo(ms(t * 97));
            replies.push_back(ask(c, "???"));
            replies.push_back(ask(c, "AI1") + "," + ask(c, "AI2"));
        }
        return replies;
    };
    EXPECT_EQ(session(), session());
}

} // namespace
} // namespace marlune::sim::test
