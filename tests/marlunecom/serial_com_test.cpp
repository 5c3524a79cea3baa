#include "link/marlune_com.h"
#include "marlunecom/com_port_name.h"
#include "marlunecom/serial_com.h"
#include "reply_buffer.h"
#include "scripted_peer.h"
#include "sim_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

constexpr LinkTimeouts kShortTimeouts{200ms, 200ms};
constexpr std::int32_t kSerial = 3;

// A folder that stands in for the COM ports while a test runs, named by MARLUNE_COM_DIR.
class ComFolderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder = std::filesystem::temp_directory_path()
                 / ("marlune-com-" + std::to_string(::getpid()) + "-"
                    + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(folder);
        ::setenv(kComDirVariable, folder.c_str(), 1);
    }

    void TearDown() override
    {
        ::unsetenv(kComDirVariable);
        std::filesystem::remove_all(folder);
    }

    void linkPort(const std::string& name, const std::filesystem::path& device)
    {
        std::filesystem::create_symlink(device, folder / name);
    }

    std::filesystem::path folder;
    SerialCom com{kShortTimeouts};
    testing::ReplyBuffer reply;
};

TEST_F(ComFolderTest, ACOMNameReachesTheDeviceLinkedInTheFolder)
{
    testing::PtyPeer peer([](const std::string& command) { return testing::PeerReply{{"R:" + command + "\x04"}}; });
    if (!peer.ready())
        GTEST_SKIP() << "no pseudo-terminals here";
    linkPort("COM4", peer.devicePath());

    const auto handle = testing::OpenLink(com, kSerial, 0, "COM4");
    ASSERT_GT(handle, 0);
    ASSERT_NE(com.sendRecv(kSerial, handle, "???\r", reply.fresh()), 0);
    EXPECT_EQ(reply.text(), "R:???");
}

TEST_F(ComFolderTest, ASearchOverPortsThatAreNotThereFindsNone)
{
    for (int n = 1; n <= 10; ++n)
        EXPECT_LE(testing::OpenLink(com, kSerial, 0, "COM" + std::to_string(n)), 0) << "COM" << n;
}

TEST_F(ComFolderTest, ALinkToAMissingDeviceFailsTheOpen)
{
    linkPort("COM2", folder / "unplugged");
    EXPECT_LE(testing::OpenLink(com, kSerial, 0, "COM2"), 0);
}

#ifdef MARLUNE_SIM_EXECUTABLE

TEST_F(ComFolderTest, ReadsTheStatusRecordFromTheSimulatorsPseudoTerminal)
{
    marlune::testing::SimProcess simulator(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--pty", "--pty-link",
                                                                    (folder / "COM1").string(), "--exit-after", "60"});
    ASSERT_TRUE(simulator.lineAfter("pty ").has_value());

    const auto handle = testing::OpenLink(com, kSerial, 0, "COM1");
    ASSERT_GT(handle, 0);
    ASSERT_NE(com.sendRecv(kSerial, handle, "???\r", reply.fresh()), 0);
    EXPECT_TRUE(reply.terminated());
    EXPECT_EQ(reply.text().substr(0, 1), "@");
}

#endif

} // namespace
} // namespace marlune::marlunecom
