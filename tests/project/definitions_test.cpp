#include "project/definitions.h"

#include <gtest/gtest.h>

namespace marlune::project {
namespace {

TEST(Definitions, LinesDropEveryBlankAndEveryLaterEqualsAndOnlyWholeLinesGiveNames)
{
    const struct {
        const char* line;
        const char* name;
        const char* value;
    } Lines[] = {
            {" MAX POS = 50 00 ", "MAXPOS", "5000"},
            {"A=1=2", "A", "12"},
            {"A=B=C", "A", "BC"},
            {"NAME\t=5", "NAME\t", "5"},
            {";a=5", ";a", "5"},
            {"X", "X", ""},
            {"=5", "", "5"},
            {"   ", "", ""},
    };
    for (const auto& line : Lines) {
        const DefinitionLine split = SplitDefinitionLine(line.line);
        EXPECT_EQ(split.name, line.name) << line.line;
        EXPECT_EQ(split.value, line.value) << line.line;
    }
    EXPECT_EQ(DefinitionNames("MAXPOS = 5000\r\nSP=V1\n\nX\r=5\rSPEED=V2\r\n  \rDONE=f3"),
              (std::vector<std::string>{"MAXPOS", "SP", "SPEED", "DONE"}));
}

// Each found name as its start, its length and its index in the list.
std::vector<std::size_t> Found(std::string_view line, const std::vector<std::string>& names)
{
    std::vector<std::size_t> found;
    for (const NameMatch& match : FindDefinedNames(line, names))
        found.insert(found.end(), {match.start, match.length, match.index});
    return found;
}

TEST(Definitions, NamesAreFoundPositionByPositionTheFirstListedWinningWithoutWordsOrCase)
{
    const std::vector<std::string> names{"MAXPOS", "SP", "SPEED", "DONE", "", "B", "POS"};
    EXPECT_EQ(Found("V10=MAXPOS+MAXPOS", names), (std::vector<std::size_t>{4, 6, 0, 11, 6, 0}));
    EXPECT_EQ(Found("SPEED=100", names), (std::vector<std::size_t>{0, 2, 1}));
    EXPECT_EQ(Found("V12=XMAXPOSY ;DONE", names), (std::vector<std::size_t>{5, 6, 0, 14, 4, 3}));
    EXPECT_EQ(Found("V11=maxpos BB", names), (std::vector<std::size_t>{11, 1, 5, 12, 1, 5}));
    EXPECT_EQ(Found("MAXPO", names), std::vector<std::size_t>{});
    EXPECT_FALSE(KeepsItsNames("V10=MAXPOS ;note"));
    EXPECT_TRUE(KeepsItsNames("PRINT \"MAXPOS\""));
    EXPECT_TRUE(KeepsItsNames("V13=#MAXPOS"));
}

// The definition list and a program's text, and what the download makes of them: the prepared
// text, or the message that stops it.
std::string Prepared(std::string_view list, std::string_view program)
{
    DefinitionTable table;
    std::string failure = ParseDefinitions(list, table);
    if (failure.empty())
        failure = ValidateDefinitions(table);
    return failure.empty() ? PrepareProgram(program, table) : failure;
}

constexpr const char* Listed = "MAXPOS = 5000\r\nSP=V1\nSPEED=V2\r\n\r\nDONE=f3";
constexpr const char* Invalid = "\rDefinition must be a number or variable or flag";

TEST(Definitions, ADownloadPreparesEachProgramOrStopsWithTheFirstMessage)
{
    const struct {
        const char* list;
        const char* program;
        std::string result;
    } Cases[] = {
            {Listed, "V10=MAXPOS+MAXPOS\r\nV11=maxpos\r\nSPEED=100\r\nV12=XMAXPOSY\r\nDONE=1 ;MAXPOS reached\r\n",
             "V10=5000+5000\rV11=maxpos\rV1EED=100\rV12=X5000Y\rf3=1 ;5000 reached\r"},
            {Listed, "PRINT \"MAXPOS\"\r\nV13=#MAXPOS\r\n\tV14=MAXPOS\r\n\r\n  \r\nPRINT \"MAXPOS\"",
             "PRINT \"MAXPOS\"\rV13=#MAXPOS\rV14=5000\r  \rPRINT \"5000\"\r"},
            {"SPEED=V2\rSP=V1", "SPEED=100\r\nA\tB\nC", "V2=100\rABC\r"},
            {"B=V1\rC=VB\rB=V9\rNAME\t=5", "C B NAME\r", "VB V1 NAME\r"},
            {"A=1=2\rV=1X\rF=Flag\r9=vvv\rENDLESS=1\r;a=5", "A V F 9 ENDLESS ;a\r", "12 1X Flag vvv 1 5\r"},
            {"", "\tX\r\n\r\n", "X\r"},
            {"A=1\r   \rNEG=-5", "A", "Definition Length Error: =\r"},
            {"NEG=-5\rX\r=5", "", "Definition Length Error: X=\r"},
            {"=5", "", "Definition Length Error: =5\r"},
            {"A=B=C", "", "Invalid Definition: A=BC" + std::string(Invalid)},
            {"OK=1\rHALF=.5", "", "Invalid Definition: HALF=.5" + std::string(Invalid)},
            {"POS=+5", "", "Invalid Definition: POS=+5" + std::string(Invalid)},
            {"EndWhile=V1", "", "Invalid Definition: EndWhile=V1" + std::string(Invalid)},
            {"while=1", "", "Invalid Definition: while=1" + std::string(Invalid)},
            {"END=1", "", "Invalid Definition: END=1" + std::string(Invalid)},
    };
    for (const auto& c : Cases)
        EXPECT_EQ(Prepared(c.list, c.program), c.result) << c.list << " | " << c.program;
}

TEST(Definitions, ListsAndTextsHaveNoFixedSize)
{
    std::string list;
    std::string program;
    std::string expected;
    for (int i = 0; i < 1500; ++i) {
        list += "N" + std::to_string(i) + "X=V" + std::to_string(i) + "\r\n";
        program += "V1=N" + std::to_string(i) + "X\r\n";
        expected += "V1=V" + std::to_string(i) + "\r";
    }
    program += std::string(40000, 'Y');
    expected += std::string(40000, 'Y') + "\r";
    EXPECT_EQ(Prepared(list, program), expected);
}

} // namespace
} // namespace marlune::project
