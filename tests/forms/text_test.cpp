#include <gtest/gtest.h>

#include "forms/text.h"

namespace marlune::forms {
namespace {

TEST(AnsiText, EveryByteSurvivesTheRoundTripThroughUnicodeAndHighBytesAreWindows1252)
{
    std::string all;
    for (int b = 1; b < 256; ++b)
        all.push_back(static_cast<char>(b));
    EXPECT_EQ(Utf8ToAnsi(AnsiToUtf8(all)), all);
    EXPECT_EQ(AnsiToUtf8("\x80"), "\xE2\x82\xAC");                         // euro sign
    EXPECT_EQ(AnsiToUtf8("\xE9"), "\xC3\xA9");                             // e acute
    EXPECT_EQ(Utf8ToAnsi("\xE2\x80\x9C\x61\xE2\x80\x9D"), "\x93\x61\x94"); // quotes around "a"
    EXPECT_EQ(Utf8ToAnsi("\xE4\xB8\xAD"), "?");                            // no such character in the code page
    EXPECT_EQ(Utf8ToAnsi("ok\xC3"), "ok?");                                // a cut sequence
}

TEST(AnsiText, UpperCaseChangesOnlyAsciiLettersAndABlankBreaksAWord)
{
    EXPECT_EQ(UpperAscii("list prog 1\xE9"), "LIST PROG 1\xE9");
    EXPECT_FALSE(ContainsUpper("exi t", "EXIT"));
}

} // namespace
} // namespace marlune::forms
