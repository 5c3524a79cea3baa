#include <gtest/gtest.h>

#include <filesystem>

#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "headless/scripted_controller.h"
#include "link/controller_link.h"
#include "panel/main_control.h"
#include "panel/monitor_ai.h"
#include "panel/new_pos.h"

namespace marlune::panel {
namespace {

TEST(PanelStateFile, AFileThatCannotBeWrittenIsNamedInOneMessageAndThePanelStillCloses)
{
    headless::HeadlessPlatform platform;
    headless::ScriptedController controller;
    forms::SetPlatform(&platform);
    link::SetCom(&controller);
    link::ResetLink();
    link::Link().linkKind = 1;
    const auto previous = std::filesystem::current_path();
    const auto dir = std::filesystem::temp_directory_path() / "marlune-panel-state";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir / kPanelStateFile); // a folder where the file should be
    std::filesystem::current_path(dir);

    NewPos newPos;
    MonitorAI monitor;
    MainControl panel(newPos, monitor);
    ASSERT_TRUE(panel.load());
    EXPECT_TRUE(platform.messages().empty()) << "a folder in the file's place is no file to read";
    EXPECT_TRUE(panel.unload());
    ASSERT_EQ(platform.messages().size(), 1u);
    const std::string& text = platform.messages()[0].request.text;
    EXPECT_EQ(text.rfind("The panel's settings could not be written to marlune.ini: ", 0), 0u) << text;
    EXPECT_FALSE(panel.loaded());

    std::filesystem::current_path(previous);
    std::filesystem::remove_all(dir);
    forms::SetPlatform(nullptr);
    link::SetCom(nullptr);
}

} // namespace
} // namespace marlune::panel
