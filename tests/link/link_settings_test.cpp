#include "headless_fixture.h"

#include <cstring>
#include <filesystem>
#include <optional>

#include "forms/files.h"
#include "link/link_settings.h"
#include "link/open_link.h"

namespace marlune::link {

using testing::HeadlessFixture;
namespace {

struct SettingsFile {
    std::optional<std::string> bytes; // nullopt: no file
    std::int16_t kind;
    std::string ipAddress;
    std::string comPort;
    std::string linkAddress;
    bool damaged = false; // the operator is told, naming the file
};

class SettingsFiles : public HeadlessFixture, public ::testing::WithParamInterface<SettingsFile> {};

TEST_P(SettingsFiles, FillTheFieldsAndDeriveTheAddress)
{
    const SettingsFile& file = GetParam();
    ASSERT_EQ(file.bytes ? forms::WriteFileAtomically(kLinkSettingsFile, *file.bytes) : "", "");
    ControllerLink& l = Link() = ControllerLink{9, "old ip", "old port", "", false, 0};
    const std::string problem = LoadLinkSettings(l.linkKind, l.ipAddress, l.comPort);
    EXPECT_EQ(problem.empty(), !file.damaged) << problem;
    EXPECT_EQ(problem.find("marlunecom.ini is damaged") != std::string::npos, file.damaged) << problem;
    EXPECT_EQ(l.linkKind, file.kind);
    EXPECT_EQ(l.ipAddress, file.ipAddress);
    EXPECT_EQ(l.comPort, file.comPort);
    EXPECT_EQ(l.linkAddress, file.linkAddress);
    EXPECT_EQ(forms::FileExists(kLinkSettingsFile), file.bytes.has_value()) << "reading makes no file";
}

// Lines end at CR LF, CR or LF, and the last one may have no end at all. A first line that is
// no number leaves the kind as it was (9 here) and, as a kind that is not 1 to 3, is told; a
// missing line leaves its field alone.
INSTANTIATE_TEST_SUITE_P(
        Files, SettingsFiles,
        ::testing::Values(SettingsFile{std::nullopt, 1, "192.168.1.250", "COM1", ""},
                          SettingsFile{" 2 \r\n127.0.0.1\r\nCOM4\r\n", 2, "127.0.0.1", "COM4", "127.0.0.1"},
                          SettingsFile{"2\n127.0.0.1:5001\nCOM4\n", 2, "127.0.0.1:5001", "COM4", "127.0.0.1:5001"},
                          SettingsFile{" 3 \r127.0.0.1\rCOM4", 3, "127.0.0.1", "COM4", "COM4"},
                          SettingsFile{" 7 \r\n127.0.0.1\r\nCOM9\r\n", 7, "127.0.0.1", "COM9", "COM9", true},
                          SettingsFile{" 1 \r\n127.0.0.1\r\nCOM9\r\n", 1, "127.0.0.1", "COM9", ""},
                          SettingsFile{"abc\r\n127.0.0.1\r\nCOM2\r\n", 9, "127.0.0.1", "COM2", "COM2", true},
                          SettingsFile{" 2 \r\n10.0.0.2", 2, "10.0.0.2", "old port", "10.0.0.2"},
                          SettingsFile{"", 9, "old ip", "old port", "old port", true}));

// A folder in the file's place is named when reading, which falls back on the simulated
// controller, and when saving, which keeps the settings in memory.
TEST_F(HeadlessFixture, AFolderInTheSettingsPlaceIsNamed)
{
    std::filesystem::create_directory(kLinkSettingsFile);
    ControllerLink& l = Link();
    EXPECT_EQ(LoadLinkSettings(l.linkKind, l.ipAddress, l.comPort),
              "The link settings file marlunecom.ini cannot be read: it is a folder. The built-in simulated "
              "controller is used, not a machine.");
    EXPECT_EQ(l.linkKind, 1);
    std::int16_t kind = 3;
    std::string ip = "127.0.0.1";
    std::string port = "COM3";
    EXPECT_FALSE(SaveLinkSettings(kind, ip, port));
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_NE(messages()[0].find("marlunecom.ini"), std::string::npos) << messages()[0];
    EXPECT_TRUE(kind == 3 && ip == "127.0.0.1" && port == "COM3");
}

// The kinds 1 to 3 open and close as the scenarios show; any other reaches no library call.
TEST_F(HeadlessFixture, AnUnknownKindOpensAndClosesNothing)
{
    for (const std::int16_t kind : {0, 4}) {
        Link().linkKind = kind;
        EXPECT_FALSE(OpenLink(true)) << kind;
        CloseLink();
    }
    EXPECT_TRUE(controller.calls().empty());
}

// The address buffer is the library's to change: the field goes in cut to the buffer, and what
// the library left there, cut the same way, becomes the field.
struct RewritingCom final : MarluneCom {
    std::string given;
    std::int32_t open(std::int32_t, std::int32_t, char* address) override
    {
        given = address;
        std::memset(address, 'A', kAddressBufferSize);
        return 1;
    }
    std::int32_t close(std::int32_t, std::int32_t) override { return 1; }
    std::int32_t sendRecv(std::int32_t, std::int32_t, const char*, char*) override { return 0; }
};

TEST_F(HeadlessFixture, TheAddressGoesInCutToItsBufferAndComesBackAsTheLibraryLeftIt)
{
    RewritingCom com;
    SetCom(&com);
    std::string field(kAddressBufferSize + 10, 'f');
    EXPECT_EQ(OpenWithAddress(3, 0, field), 1);
    EXPECT_EQ(com.given, std::string(kAddressBufferSize - 1, 'f'));
    EXPECT_EQ(field, std::string(kAddressBufferSize - 1, 'A'));
}

} // namespace
} // namespace marlune::link
