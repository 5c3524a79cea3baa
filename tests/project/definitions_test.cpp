#include "project/definitions.h"

#include <gtest/gtest.h>

namespace marlune::project {
namespace {

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

constexpr const char* Listed = " MAX POS = 50 00 \r\nSP=V1\nSPEED=V2\r\n\r\nDONE=f3";
const std::string Invalid = "\rDefinition must be a number or variable or flag";

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
            {"A=B=C", "", "Invalid Definition: A=BC" + Invalid},
            {"OK=1\rHALF=.5", "", "Invalid Definition: HALF=.5" + Invalid},
            {"POS=+5", "", "Invalid Definition: POS=+5" + Invalid},
            {"EndWhile=V1", "", "Invalid Definition: EndWhile=V1" + Invalid},
            {"while=1", "", "Invalid Definition: while=1" + Invalid},
            {"END=1", "", "Invalid Definition: END=1" + Invalid},
    };
    for (const auto& c : Cases)
        EXPECT_EQ(Prepared(c.list, c.program), c.result) << c.list << " | " << c.program;
    EXPECT_EQ(DefinitionNames("MAXPOS = 5000\r\nSP=V1\n\nX\r=5\rSPEED=V2\r\n  \rDONE=f3"),
              (std::vector<std::string>{"MAXPOS", "SP", "SPEED", "DONE"}));
}

TEST(Definitions, ListsAndTextsHaveNoFixedSize)
{
    std::string list;
    std::string program(40000, 'Y');
    std::string expected = program + "\r";
    for (int i = 0; i < 1500; ++i) {
        list += "N" + std::to_string(i) + "X=V" + std::to_string(i) + "\r\n";
        program += "\r\nV1=N" + std::to_string(i) + "X";
        expected += "V1=V" + std::to_string(i) + "\r";
    }
    EXPECT_EQ(Prepared(list, program), expected);
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
}

} // namespace
} // namespace marlune::project
