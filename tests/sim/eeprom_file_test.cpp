// The EEPROM kept in a file between runs of a simulated controller.
#include "eeprom_file.h"
#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace marlune::sim {
namespace {

using namespace test;

class EepromFileTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder = std::filesystem::temp_directory_path() / ("marlune-eeprom-" + std::to_string(::getpid()));
        std::filesystem::remove_all(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string contents() const
    {
        std::ifstream in(folder / "kept" / "eeprom");
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    std::filesystem::path folder;
};

TEST_F(EepromFileTest, WhatWasStoredComesBackInTheNextControllerAndOnlyAStoreIsSaved)
{
    EepromFile file(folder / "kept" / "eeprom");
    std::string why;
    ASSERT_TRUE(file.load(why)) << "no file yet: a blank EEPROM";
    Controller first;
    Play(first, {{"OPENPROG3"}, {"V1=V1+1 'a \\ back\\r"}, {"CLOSE"}, {"V248=-2147483648"}, {"I12=255"},
                 {"PROJ=\"cell \\ 4\""}, {"PRON=3"}, {"IPA=127.0.0.9"}});
    ASSERT_TRUE(file.saveIfWritten(first.eeprom(), why));
    EXPECT_FALSE(std::filesystem::exists(folder / "kept")) << "nothing stored, nothing written";

    Ask(first, "STORE");
    ASSERT_TRUE(file.saveIfWritten(first.eeprom(), why)) << why;
    Controller second;
    EepromFile again(folder / "kept" / "eeprom");
    auto kept = again.load(why);
    ASSERT_TRUE(kept) << why;
    second.powerUpWith(std::move(*kept));
    EXPECT_EQ(FormatEeprom(second.eeprom()), FormatEeprom(first.eeprom()));
    EXPECT_EQ(Ask(second, "LISTPROG3"), "V1=V1+1 'a \\ back\\r");
    EXPECT_EQ(Ask(second, "V248"), "-2147483648");
    EXPECT_EQ(Ask(second, "I48"), "1");
    EXPECT_EQ(second.projectName(), "cell \\ 4");
}

TEST_F(EepromFileTest, AFileThatCannotBeReadIsNamedByItsLineAndLeftAsItIs)
{
    const std::string good = FormatEeprom(Eeprom{});
    for (const std::string& text :
         {std::string(), std::string("eeprom\n"), good + "I 49 1\n", good + "V 1 x\n", good + "P 5 V1=1\n",
          good + "P 1 a\\q\n", good + "writes -1\n", good + "colour red\n"}) {
        std::filesystem::create_directories(folder / "kept");
        std::ofstream(folder / "kept" / "eeprom", std::ios::binary) << text;
        EepromFile file(folder / "kept" / "eeprom");
        std::string why;
        EXPECT_FALSE(file.load(why)) << text;
        EXPECT_NE(why, "") << text;
        EXPECT_EQ(contents(), text);
    }
}

} // namespace
} // namespace marlune::sim
