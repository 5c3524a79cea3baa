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

} // namespace
} // namespace marlune::project
