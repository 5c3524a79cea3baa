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

TEST(AnsiText, UpperCaseTestsFindWordsInsideLongerOnes)
{
    EXPECT_EQ(UpperAscii("list prog 1\xE9"), "LIST PROG 1\xE9");
    EXPECT_TRUE(ContainsUpper("restore", "STORE"));
    EXPECT_TRUE(ContainsUpper(";exit", "EXIT"));
    EXPECT_FALSE(ContainsUpper("exi t", "EXIT"));
}

TEST(Files, AtomicWriteReplacesAndReportsFailure)
{
    const auto dir = std::filesystem::temp_directory_path() / "marlune-files-test";
    std::filesystem::create_directories(dir);
    const std::string path = (dir / "a.ini").string();
    EXPECT_EQ(WriteFileAtomically(path, "one\r\n"), "");
    EXPECT_EQ(WriteFileAtomically(path, "two"), "");
    EXPECT_EQ(ReadFileBytes(path), std::optional<std::string>("two"));
    EXPECT_TRUE(FileExists(path));
    EXPECT_FALSE(FileExists((dir / "missing").string()));
    EXPECT_FALSE(ReadFileBytes((dir / "missing").string()).has_value());
    EXPECT_NE(WriteFileAtomically((dir / "no-such-dir" / "b.ini").string(), "x"), "");
    EXPECT_FALSE(FileExists((dir / "no-such-dir" / "b.ini.tmp-marlune").string()));
    std::filesystem::remove_all(dir);
}

} // namespace
} // namespace marlune::forms
