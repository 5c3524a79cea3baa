#include "sim_test_support.h"

namespace marlune::sim::test {
namespace {

// PSTAT answers: state, current line, open for writing, number of lines.
// clang-format off
const Conversation kProgramStorage[] = {
    {"DownloadedLinesComeBackByPstatUploadAndListAndWereNotCarriedOut", {
        {"OPENPROG2"}, {"V10=5000"}, {"X1000"}, {"WAITX"}, {"V11=1"}, {"CLOSE"}, {"PSTAT2", "0,0,0,4"},
        {"UPLOAD2", "V10=5000"}, {"UPLOAD2", "X1000"}, {"PSTAT2", "0,0,0,4"}, {"UPLOAD2", "V10=5000"},
        {"UPLOAD2", "X1000"}, {"UPLOAD2", "WAITX"}, {"UPLOAD2", "V11=1"}, {"UPLOAD2", "END"},
        {"LISTPROG2", "V10=5000\r\nX1000\r\nWAITX\r\nV11=1"}, {"listprog2", "V10=5000\r\nX1000\r\nWAITX\r\nV11=1"},
        {"PX", "0"}, {"V10", "0"}, {"PSTAT3", "0,0,0,0"}, {"UPLOAD3", "END"}}},
    {"ClearEmptiesOnlyTheOpenProgram", {
        {"OPENPROG1"}, {"V1=1"}, {"OPENPROG2"}, {"V2=2"}, {"CLEAR"}, {"CLOSE"}, {"PSTAT2", "0,0,0,0"},
        {"PSTAT1", "0,0,0,1"}}},
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
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(ProgramStorage, Converses, ::testing::ValuesIn(kProgramStorage), NameOf);

TEST(ProgramStorage, AProgramIsFullAfterAThousandLines)
{
    Controller c;
    Ask(c, "OPENPROG1");
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(Ask(c, "V1=1"), "OK");
    EXPECT_EQ(Ask(c, "V1=1").front(), '?');
}

} // namespace
} // namespace marlune::sim::test
