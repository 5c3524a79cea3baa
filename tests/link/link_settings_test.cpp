#include "headless_fixture.h"

#include <filesystem>

#include "forms/files.h"
#include "link/link_settings.h"
#include "link/open_link.h"

namespace marlune::link {

using testing::HeadlessFixture;
namespace {

void Load()
{
    ControllerLink& l = Link();
    LoadLinkSettings(l.linkKind, l.ipAddress, l.comPort);
}

TEST_F(HeadlessFixture, WithoutAFileTheDefaultsHoldAndNoFileIsMade)
{
    Link().linkKind = 0;
    Load();
    EXPECT_EQ(Link().linkKind, 1);
    EXPECT_EQ(Link().linkAddress, "");
    EXPECT_EQ(Link().comPort, "COM1");
    EXPECT_EQ(Link().ipAddress, "192.168.1.250");
    EXPECT_FALSE(forms::FileExists(kLinkSettingsFile));
}

struct SettingsFile {
    std::string bytes;
    std::int16_t kind;
    std::string linkAddress;
};

class SettingsFiles : public HeadlessFixture, public ::testing::WithParamInterface<SettingsFile> {};

TEST_P(SettingsFiles, KindAndDerivedAddress)
{
    ASSERT_EQ(forms::WriteFileAtomically(kLinkSettingsFile, GetParam().bytes), "");
    Link().linkKind = 0;
    Load();
    EXPECT_EQ(Link().linkKind, GetParam().kind);
    EXPECT_EQ(Link().linkAddress, GetParam().linkAddress);
}

INSTANTIATE_TEST_SUITE_P(Files, SettingsFiles,
                         ::testing::Values(SettingsFile{" 2 \r\n127.0.0.1\r\nCOM4\r\n", 2, "127.0.0.1"},
                                           SettingsFile{"2\r\n127.0.0.1:5001\r\nCOM4\r\n", 2, "127.0.0.1:5001"},
                                           SettingsFile{" 3 \r\n127.0.0.1\r\nCOM4\r\n", 3, "COM4"},
                                           SettingsFile{" 7 \r\n127.0.0.1\r\nCOM9\r\n", 7, "COM9"},
                                           SettingsFile{" 1 \r\n127.0.0.1\r\nCOM9\r\n", 1, ""},
                                           // A first line that is no number leaves the kind as it was: 0 at start.
                                           SettingsFile{"abc\r\n127.0.0.1\r\nCOM2\r\n", 0, "COM2"},
                                           SettingsFile{"", 0, ""}));

TEST_F(HeadlessFixture, SavedFileHasThreeLinesWithTheKindBetweenBlanks)
{
    std::int16_t kind = 3;
    std::string ip = "127.0.0.1";
    std::string port = "COM3";
    EXPECT_TRUE(SaveLinkSettings(kind, ip, port));
    EXPECT_EQ(forms::ReadFileBytes(kLinkSettingsFile), std::optional<std::string>(" 3 \r\n127.0.0.1\r\nCOM3\r\n"));
    EXPECT_EQ(Link().linkAddress, "") << "saving derives nothing";
    Load();
    EXPECT_EQ(Link().linkKind, 3);
    EXPECT_EQ(Link().linkAddress, "COM3");
}

TEST_F(HeadlessFixture, ASettingsFileThatCannotBeWrittenIsReportedAndNothingIsLost)
{
    std::filesystem::create_directory(kLinkSettingsFile); // a folder in the file's place
    std::int16_t kind = 2;
    std::string ip = "127.0.0.1";
    std::string port = "COM1";
    EXPECT_FALSE(SaveLinkSettings(kind, ip, port));
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_NE(messages()[0].find("marlunecom.ini"), std::string::npos) << messages()[0];
    EXPECT_EQ(kind, 2);
    EXPECT_EQ(ip, "127.0.0.1");
}

TEST_F(HeadlessFixture, EthernetMakesExactlyOneMoreAttempt)
{
    Link().linkKind = 2;
    Link().ipAddress = "127.0.0.1";
    controller.queueOpenResults({0, 5});
    EXPECT_TRUE(OpenLink());
    EXPECT_EQ(Link().linkHandle, 5);
    controller.queueOpenResults({5});
    EXPECT_TRUE(OpenLink());
    controller.queueOpenResults({-1, 0});
    EXPECT_FALSE(OpenLink());
    EXPECT_EQ(Link().linkHandle, 0);
    controller.queueOpenResults({0});
    EXPECT_FALSE(OpenLink(false));
    int opens = 0;
    for (const headless::ComCall& call : controller.calls()) {
        if (call.operation == headless::ComCall::Operation::Open) {
            ++opens;
            EXPECT_EQ(call.kind, 2);
            EXPECT_EQ(call.mode, 0);
            EXPECT_EQ(call.bytes, "127.0.0.1");
        }
    }
    EXPECT_EQ(opens, 2 + 1 + 2 + 1);
}

TEST_F(HeadlessFixture, EachKindOpensWithItsAddressAndModeAndOthersMakeNoCall)
{
    Link().linkAddress = "usb-address";
    Link().comPort = "COM3";
    Link().ipAddress = "127.0.0.1";
    for (std::int16_t kind : {1, 3, 7}) {
        Link().linkKind = kind;
        OpenLink();
        CloseLink();
    }
    const auto& calls = controller.calls();
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0].mode, 1);
    EXPECT_EQ(calls[0].bytes, "usb-address");
    EXPECT_EQ(calls[2].kind, 3);
    EXPECT_EQ(calls[2].mode, 0);
    EXPECT_EQ(calls[2].bytes, "COM3");
    EXPECT_EQ(calls[3].operation, headless::ComCall::Operation::Close);
}

} // namespace
} // namespace marlune::link
