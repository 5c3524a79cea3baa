#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/quoted_text.h"
#include "headless/scenario_lexer.h"
#include "headless/scenario_parser.h"
#include "headless/statement_cursor.h"

namespace marlune::headless {
namespace {

struct LexCase {
    std::string line;
    std::vector<std::string> words;
};

void PrintTo(const LexCase& c, std::ostream* os) { *os << Quoted(c.line); }

class LexWords : public ::testing::TestWithParam<LexCase> {};

TEST_P(LexWords, SplitsAndResolvesEscapes)
{
    const LexedLine lexed = LexLine(GetParam().line);
    ASSERT_EQ(lexed.error, "");
    std::vector<std::string> words;
    for (const Word& word : lexed.words)
        words.push_back(word.text);
    EXPECT_EQ(words, GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(Lines, LexWords,
                         ::testing::Values(LexCase{"reply X1000 OK", {"reply", "X1000", "OK"}},
                                           LexCase{"  \texpect   sent\t\"A B\"  ", {"expect", "sent", "A B"}},
                                           LexCase{R"(x "q\"uote" "back\\slash")", {"x", "q\"uote", "back\\slash"}},
                                           LexCase{R"(x "\r\n\t")", {"x", "\r\n\t"}},
                                           LexCase{R"(x "\x04\x7f\xFFz")", {"x", std::string("\x04\x7f\xff", 3) + "z"}},
                                           LexCase{R"(x "\x00")", {"x", std::string(1, '\0')}},
                                           LexCase{R"(x "" C:\dir)", {"x", "", "C:\\dir"}},
                                           LexCase{"x a#b", {"x", "a#b"}}, LexCase{"   # a comment \"unclosed", {}},
                                           LexCase{"", {}}));

TEST(ScenarioLexer, ReportsWhatIsWrongWithALine)
{
    for (const char* line : {R"(x "unclosed)", R"(x "ends in \")", R"(x "\q")", R"(x "\x4")", R"(x "\xG0")",
                             R"(x ab"cd")", R"(x "ab"cd)", R"(x "a\)"})
        EXPECT_NE(LexLine(line).error, "") << line;
}

TEST(QuotedText, EveryByteComesBackThroughTheLexer)
{
    std::string all;
    for (int b = 0; b < 256; ++b)
        all.push_back(static_cast<char>(b));
    const LexedLine lexed = LexLine("x " + Quoted(all));
    ASSERT_EQ(lexed.error, "");
    ASSERT_EQ(lexed.words.size(), 2u);
    EXPECT_EQ(lexed.words[1].text, all);
    EXPECT_EQ(Quoted("OK\r\n\x04\xe9"), R"("OK\r\n\x04\xE9")");
}

TEST(ScenarioLexer, DurationsParseToMilliseconds)
{
    const std::map<std::string, std::int64_t> good = {{"500ms", 500}, {"2s", 2000}, {"0ms", 0}, {"86400s", 86400000}};
    for (const auto& [word, ms] : good)
        EXPECT_EQ(ParseDuration(word), ms) << word;
    for (const char* word : {"86401s", "2", "ms", "s", "-1s", "+1s", "1.5s", "2m", "2 s"})
        EXPECT_FALSE(ParseDuration(word)) << word;
}

// The statement names of a scenario as the cursor hands them out, repeats unrolled.
std::vector<std::string> Unrolled(const Scenario& scenario)
{
    std::vector<std::string> names;
    StatementCursor cursor(scenario.statements);
    while (const Statement* statement = cursor.next())
        names.push_back(statement->words.size() > 1 ? statement->words[1].text : statement->name());
    return names;
}

TEST(ScenarioParser, NestedRepeatsUnrollInOrder)
{
    const ScenarioFile file = ParseScenarios("scenario \"one\"\r\n"
                                             "x a\r\n"
                                             "repeat 2\n"
                                             "  x b\n"
                                             "  repeat 3\n"
                                             "    x c\n"
                                             "  end-repeat\n"
                                             "  repeat 0\n"
                                             "    x never\n"
                                             "  end-repeat\n"
                                             "end-repeat\n"
                                             "x d\n"
                                             "scenario two\n"
                                             "# nothing but a comment\n");
    ASSERT_FALSE(file.error);
    ASSERT_EQ(file.scenarios.size(), 2u);
    EXPECT_EQ(file.scenarios[0].title, "one");
    EXPECT_EQ(file.scenarios[1].title, "two");
    EXPECT_EQ(file.scenarios[1].line, 13);
    EXPECT_FALSE(file.scenarios[0].error);
    EXPECT_EQ(Unrolled(file.scenarios[0]),
              (std::vector<std::string>{"a", "b", "c", "c", "c", "b", "c", "c", "c", "d"}));
    EXPECT_EQ(file.scenarios[0].statements[1].body[1].line, 5);
    EXPECT_TRUE(Unrolled(file.scenarios[1]).empty());
}

struct ErrorCase {
    std::string text;
    int scenario; // -1: the error stands outside every scenario
    int line;
    std::string message;
};

void PrintTo(const ErrorCase& c, std::ostream* os) { *os << Quoted(c.text); }

class ParseErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(ParseErrors, NameTheirLine)
{
    const ErrorCase& c = GetParam();
    const ScenarioFile file = ParseScenarios(c.text);
    const std::optional<ParseError>& error =
            c.scenario < 0 ? file.error : file.scenarios.at(static_cast<std::size_t>(c.scenario)).error;
    ASSERT_TRUE(error) << c.text;
    EXPECT_EQ(error->line, c.line);
    EXPECT_NE(error->message.find(c.message), std::string::npos) << error->message;
    // The error spoils only the scenario it stands in; every scenario line still starts one.
    std::size_t titles = 0;
    for (auto at = c.text.find("scenario"); at != std::string::npos; at = c.text.find("scenario", at + 1))
        ++titles;
    EXPECT_EQ(file.scenarios.size(), titles);
    for (std::size_t i = 0; i < file.scenarios.size(); ++i)
        EXPECT_EQ(bool(file.scenarios[i].error), static_cast<int>(i) == c.scenario) << i;
}

INSTANTIATE_TEST_SUITE_P(Files, ParseErrors,
                         ::testing::Values(ErrorCase{"", -1, 1, "no scenario"},
                                           ErrorCase{"\n# only\nstart\n", -1, 3, "before the first"},
                                           ErrorCase{"scenario a\nstart\nend-repeat\n", 0, 3, "without repeat"},
                                           ErrorCase{"scenario a\nrepeat 2\nrepeat 3\nend-repeat\nscenario b\n", 0, 2,
                                                     "without end-repeat"},
                                           ErrorCase{"scenario a\nrepeat 2\n", 0, 2, "without end-repeat"},
                                           ErrorCase{"scenario a\nrepeat many\nend-repeat\n", 0, 2, "count"},
                                           ErrorCase{"scenario a\nrepeat -1\nend-repeat\n", 0, 2, "count"},
                                           ErrorCase{"scenario a\nend-repeat now\n", 0, 2, "takes nothing"},
                                           ErrorCase{"scenario\n", 0, 1, "one title"},
                                           ErrorCase{"scenario a\nx \"\\q\"\nscenario b\nx c\n", 0, 2, "escape"},
                                           ErrorCase{"scenario a\nstart\n  type X.Y \"open\n", 0, 3, "closing quote"}));

} // namespace
} // namespace marlune::headless
