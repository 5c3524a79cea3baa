#include "link/marlune_com.h"
#include "marlunecom/serial_com.h"
#include "reply_buffer.h"
#include "sim_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

#ifdef MARLUNE_SIM_EXECUTABLE

TEST(SerialComTest, ReadsTheStatusRecordFromTheSimulatorsPseudoTerminal)
{
    const auto folder = std::filesystem::temp_directory_path() / ("marlune-com-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    marlune::testing::SimProcess simulator(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--pty", "--pty-link",
                                                                    (folder / "COM1").string(), "--exit-after", "60"});
    ASSERT_TRUE(simulator.lineAfter("pty ").has_value());

    SerialCom com{LinkTimeouts{200ms, 200ms}};
    const auto handle = testing::OpenLink(com, 3, 0, (folder / "COM1").string());
    testing::ReplyBuffer reply;
    EXPECT_NE(com.sendRecv(3, handle, "???\r", reply.fresh()), 0);
    EXPECT_TRUE(reply.terminated());
    EXPECT_EQ(reply.text().substr(0, 1), "@");
    std::filesystem::remove_all(folder);
}

#endif

} // namespace
} // namespace marlune::marlunecom
