#include <gtest/gtest.h>

#include "forms/files.h"
#include "forms/text.h"

#include <filesystem>

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
    EXPECT_EQ(UpperAscii("`az{ list prog 1\xE9"), "`AZ{ LIST PROG 1\xE9");
    EXPECT_FALSE(ContainsUpper("exi t", "EXIT"));
}

// A write whose temporary cannot take the target's place leaves both as they were.
TEST(Files, AWriteThatCannotReplaceItsTargetLeavesNoTemporaryBehind)
{
    const auto target = std::filesystem::temp_directory_path() / "marlune-files-test";
    std::filesystem::create_directories(target);
    EXPECT_NE(WriteFileAtomically(target.string(), "x"), "");
    EXPECT_TRUE(std::filesystem::is_directory(target));
    EXPECT_FALSE(std::filesystem::exists(target.string() + ".tmp-marlune"));
    std::filesystem::remove_all(target);
}

} // namespace
} // namespace marlune::forms
