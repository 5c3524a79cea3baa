#include <gtest/gtest.h>

#include <filesystem>

#include "headless_fixture.h"
#include "panel/main_control.h"
#include "panel/monitor_ai.h"
#include "panel/new_pos.h"
#include "tools/program_viewer.h"
#include "transfer/status.h"

namespace marlune::panel {
namespace {

using PanelStateFile = testing::HeadlessFixture;

TEST_F(PanelStateFile, AFileThatCannotBeWrittenIsNamedInOneMessageAndThePanelStillCloses)
{
    std::filesystem::create_directory(kPanelStateFile); // a folder where the file should be
    platform.setMessageDwell(2000);                     // the poll's timer falls due during the message

    NewPos newPos;
    MonitorAI monitor;
    transfer::Status status;
    tools::ProgramViewer viewer(status);
    MainControl panel(newPos, monitor, viewer);
    ASSERT_TRUE(panel.load());
    EXPECT_TRUE(platform.messages().empty()) << "a folder in the file's place is no file to read";
    EXPECT_TRUE(panel.unload());
    ASSERT_EQ(platform.messages().size(), 1u);
    const std::string& text = platform.messages()[0].request.text;
    EXPECT_EQ(text.rfind("The panel's settings could not be written to marlune.ini: ", 0), 0u) << text;
}

} // namespace
} // namespace marlune::panel
