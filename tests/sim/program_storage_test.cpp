#include "sim_test_support.h"

#include <gtest/gtest.h>

namespace marlune::sim::test {
namespace {

// The fourth comma-separated field of PSTAT, as the uploader reads it.
std::string fourthField(const std::string& reply)
{
    int commas = 0;
    std::string field;
    for (const char ch : reply) {
        if (ch == ',')
            ++commas;
        else if (commas == 3)
            field.push_back(ch);
    }
    return field;
}

TEST(ProgramStorage, DownloadedLinesComeBackByPstatUploadAndList)
{
    Controller c;
    download(c, 2, {"V10=5000", "X1000", "WAITX", "V11=1"});
    EXPECT_EQ(fourthField(ask(c, "PSTAT2")), "4");
    EXPECT_EQ(ask(c, "UPLOAD2"), "V10=5000");
    EXPECT_EQ(ask(c, "UPLOAD2"), "X1000");
    EXPECT_EQ(ask(c, "UPLOAD2"), "WAITX");
    EXPECT_EQ(ask(c, "UPLOAD2"), "V11=1");
    EXPECT_EQ(ask(c, "LISTPROG2"), "V10=5000\r\nX1000\r\nWAITX\r\nV11=1");
    EXPECT_EQ(ask(c, "listprog2"), ask(c, "LISTPROG2"));
    // Lines stored while the program was open were not carried out.
    EXPECT_EQ(c.position(AxisId::X), 0);
    EXPECT_EQ(c.vVariable(10), 0);
}

TEST(ProgramStorage, PstatStartsTheUploadAgain)
{
    Controller c;
    download(c, 1, {"V1=1", "V2=2"});
    ask(c, "PSTAT1");
    ask(c, "UPLOAD1");
    ask(c, "PSTAT1");
    EXPECT_EQ(ask(c, "UPLOAD1"), "V1=1");
}

TEST(ProgramStorage, UploadPastTheLastLineNeverAnswersEmpty)
{
    Controller c;
    download(c, 3, {});
    EXPECT_EQ(fourthField(ask(c, "PSTAT3")), "0");
    // The uploader fetches at least one line; it must not get an empty reply.
    EXPECT_EQ(ask(c, "UPLOAD3"), "END");
    download(c, 3, {"V1=1"});
    ask(c, "PSTAT3");
    ask(c, "UPLOAD3");
    EXPECT_EQ(ask(c, "UPLOAD3"), "END");
}

TEST(ProgramStorage, ClearEmptiesOnlyTheOpenProgram)
{
    Controller c;
    download(c, 1, {"V1=1"});
    download(c, 2, {"V2=2"});
    ask(c, "OPENPROG2");
    EXPECT_EQ(ask(c, "CLEAR"), "OK");
    ask(c, "CLOSE");
    EXPECT_TRUE(c.programLines(2).empty());
    EXPECT_EQ(c.programLines(1).size(), 1u);
}

TEST(ProgramStorage, StatusAndListingStillAnswerWhileAProgramIsOpen)
{
    Controller c;
    ask(c, "OPENPROG4");
    EXPECT_EQ(ask(c, "???").front(), '@');
    EXPECT_EQ(ask(c, "PSTAT4"), "0,0,1,0");
    EXPECT_EQ(ask(c, "open prog 4"), "OK");
    ask(c, "X 100 ");
    EXPECT_EQ(c.programLines(4), std::vector<std::string>{"X 100 "});
}

TEST(ProgramStorage, ClearWithoutAnOpenProgramIsAnError)
{
    Controller c;
    EXPECT_EQ(ask(c, "CLEAR").front(), '?');
}

TEST(ProgramStorage, AProgramIsFullAfterAThousandLines)
{
    Controller c;
    ask(c, "OPENPROG1");
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(ask(c, "V1=1"), "OK");
    EXPECT_EQ(ask(c, "V1=1").front(), '?');
}

TEST(ProgramStorage, ARunningProgramCannotBeOpened)
{
    Controller c;
    download(c, 1, {"DELAY 10000"});
    ask(c, "RUN1");
    EXPECT_EQ(ask(c, "OPENPROG1").front(), '?');
    ask(c, "QUIT1");
    EXPECT_EQ(ask(c, "OPENPROG1"), "OK");
}

TEST(ProjectFrames, NameKeepsBlanksAndQuotesAndComesBackBetweenQuotes)
{
    Controller c;
    EXPECT_EQ(ask(c, "PROJ"), "\"\"");
    EXPECT_EQ(ask(c, "PROJ=\"my \"best\" motion.prj\""), "OK");
    EXPECT_EQ(ask(c, "PROJ"), "\"my \"best\" motion.prj\"");
    EXPECT_EQ(ask(c, "proj=\"\""), "OK");
    EXPECT_EQ(ask(c, "PROJ"), "\"\"");
}

TEST(ProjectFrames, ProgramSetIsUnknownUntilStored)
{
    Controller c;
    EXPECT_EQ(ask(c, "PRON").front(), '?');
    EXPECT_EQ(ask(c, "PRON=11"), "OK");
    EXPECT_EQ(ask(c, "PRON"), "11");
    EXPECT_EQ(ask(c, "PRON=16").front(), '?');
    EXPECT_EQ(ask(c, "PRON"), "11");
}

} // namespace
} // namespace marlune::sim::test
