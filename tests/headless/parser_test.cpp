#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "headless/quoted_text.h"
#include "headless/scenario_lexer.h"
#include "headless/scenario_parser.h"
#include "headless/statement_cursor.h"

namespace marlune::headless {
namespace {

TEST(ScenarioLexer, SplitsWordsResolvesEscapesAndReportsWhatIsWrongWithALine)
{
    // clang-format off
    const std::vector<std::pair<std::string, std::vector<std::string>>> lines = {
        {"reply X1000 OK", {"reply", "X1000", "OK"}}, {"  \texpect   sent\t\"A B\"  ", {"expect", "sent", "A B"}},
        {R"(x "q\"uote" "back\\slash")", {"x", "q\"uote", "back\\slash"}}, {R"(x "\r\n\t")", {"x", "\r\n\t"}},
        {R"(x "\x04\x7f\xFFz")", {"x", std::string("\x04\x7f\xff", 3) + "z"}}, {"x a#b", {"x", "a#b"}},
        {R"(x "\x00")", {"x", std::string(1, '\0')}}, {R"(x "" C:\dir)", {"x", "", "C:\\dir"}},
        {"   # a comment \"unclosed", {}}, {"", {}}};
    // clang-format on
    for (const auto& [line, expected] : lines) {
        const LexedLine lexed = LexLine(line);
        std::vector<std::string> words;
        for (const Word& word : lexed.words)
            words.push_back(word.text);
        EXPECT_EQ(lexed.error, "") << Quoted(line);
        EXPECT_EQ(words, expected) << Quoted(line);
    }
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

// Each error names its line and spoils only the scenario it stands in (-1: none, it stands
// outside every scenario); every scenario line still starts one.
TEST(ScenarioParser, ErrorsNameTheirLine)
{
    // clang-format off
    const std::vector<std::tuple<std::string, int, int, std::string>> files = {
        {"", -1, 1, "no scenario"}, {"\n# only\nstart\n", -1, 3, "before the first"}, {"scenario\n", 0, 1, "one title"},
        {"scenario a\nstart\nend-repeat\n", 0, 3, "without repeat"},
        {"scenario a\nend-repeat now\n", 0, 2, "takes nothing"},
        {"scenario a\nrepeat 2\nrepeat 3\nend-repeat\nscenario b\n", 0, 2, "without end-repeat"},
        {"scenario a\nrepeat 2\n", 0, 2, "without end-repeat"},
        {"scenario a\nrepeat many\nend-repeat\n", 0, 2, "count"},
        {"scenario a\nrepeat -1\nend-repeat\n", 0, 2, "count"},
        {"scenario a\nx \"\\q\"\nscenario b\nx c\n", 0, 2, "escape"},
        {"scenario a\nstart\n  type X.Y \"open\n", 0, 3, "closing quote"}};
    // clang-format on
    for (const auto& [text, scenario, line, message] : files) {
        SCOPED_TRACE(Quoted(text));
        const ScenarioFile file = ParseScenarios(text);
        const std::optional<ParseError>& error =
                scenario < 0 ? file.error : file.scenarios.at(static_cast<std::size_t>(scenario)).error;
        ASSERT_TRUE(error);
        EXPECT_EQ(error->line, line);
        EXPECT_NE(error->message.find(message), std::string::npos) << error->message;
        std::size_t titles = 0;
        for (auto at = text.find("scenario"); at != std::string::npos; at = text.find("scenario", at + 1))
            ++titles;
        EXPECT_EQ(file.scenarios.size(), titles);
        for (std::size_t i = 0; i < file.scenarios.size(); ++i)
            EXPECT_EQ(bool(file.scenarios[i].error), static_cast<int>(i) == scenario) << i;
    }
}

} // namespace
} // namespace marlune::headless
