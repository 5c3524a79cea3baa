#include <gtest/gtest.h>

#include <set>

#include "forms/files.h"
#include "headless_fixture.h"
#include "link/controller_link.h"
#include "project/project_manager.h"
#include "project/projects.h"
#include "shell/frm_main.h"
#include "shell/program.h"

namespace marlune::shell {
namespace {

class Frame : public testing::HeadlessFixture {
protected:
    Program program;
};

TEST_F(Frame, EveryMenuEntryHangsOnAMenuThatStandsBeforeIt)
{
    std::set<std::string> seen;
    for (forms::Control* control : program.frame().controls()) {
        const auto* item = dynamic_cast<const forms::MenuItem*>(control);
        if (!item)
            continue;
        EXPECT_TRUE(item->parent().empty() || seen.count(item->parent())) << item->name();
        EXPECT_TRUE(seen.insert(item->name()).second) << "twice: " << item->name();
    }
    EXPECT_FALSE(seen.empty());
}

TEST_F(Frame, AToolBarKeyIsComparedExactly)
{
    program.Main();
    FrmMain& frame = program.frame();
    EXPECT_FALSE(frame.tbToolBar.pressButton("Terminal"));
    EXPECT_FALSE(frame.tbToolBar.pressButton(""));
    EXPECT_TRUE(frame.tbToolBar.pressButton("Tile"));
}

TEST_F(Frame, ShutDownWritesThePlaceInTwipsUnlessMinimised)
{
    program.Main();
    FrmMain& frame = program.frame();
    frame.left = 10;
    frame.top = 20;
    frame.width = 800;
    frame.height = 600;
    frame.windowState = forms::WindowState::Minimized;
    ASSERT_TRUE(frame.unload());
    EXPECT_FALSE(platform.setting("Settings", "MainLeft"));

    ASSERT_TRUE(frame.load());
    frame.windowState = forms::WindowState::Maximized;
    ASSERT_TRUE(frame.unload());
    EXPECT_EQ(platform.setting("Settings", "MainLeft"), "150");
    EXPECT_EQ(platform.setting("Settings", "MainTop"), "300");
    EXPECT_EQ(platform.setting("Settings", "MainWidth"), "12000");
    EXPECT_EQ(platform.setting("Settings", "MainHeight"), "9000");
}

// A link chosen for the run stands over marlunecom.ini, shows in the status bar, and leaves the
// file as it was; a damaged file then says nothing.
TEST_F(Frame, ALinkForTheRunStandsOverTheSettingsFileAndLeavesItAlone)
{
    ASSERT_EQ(forms::WriteFileAtomically(link::kLinkSettingsFile, "x\r\n192.0.2.1\r\nCOM4\r\n"), "");
    program.linkForRun = link::LinkSettings{2, "127.0.0.1:6001", "COM1"};
    program.Main();
    const link::ControllerLink& link = link::Link();
    EXPECT_EQ(std::to_string(link.linkKind) + " " + link.linkAddress, "2 127.0.0.1:6001");
    EXPECT_EQ(program.frame().sbLink.caption(), "TCP 127.0.0.1:6001");
    EXPECT_EQ(forms::ReadFileBytes(link::kLinkSettingsFile), "x\r\n192.0.2.1\r\nCOM4\r\n");
    EXPECT_TRUE(platform.messages().empty());
}

// The list of the last run comes back at start, each name once, and its empty places stay hidden;
// the frame's title follows the open project.
TEST_F(Frame, TheRecentProjectsOfTheStoreComeBackAtStartAndTheTitleFollowsTheProject)
{
    for (const auto& [key, name] : {std::pair{"File1", "b.prj"}, {"File2", ""}, {"File3", "b.prj"}, {"File4", "c.prj"}})
        platform.saveSetting("Marlune Desk", "Recent Projects", key, name);
    program.Main();
    FrmMain& frame = program.frame();
    std::vector<std::string> shown;
    for (const char* name : {"mnuFileRecent1", "mnuFileRecent2", "mnuFileRecent3", "mnuFileBar5"})
        shown.push_back(frame.menuItem(name)->visible() ? frame.menuItem(name)->caption() : "hidden");
    EXPECT_EQ(shown, (std::vector<std::string>{"&1 b.prj", "&2 c.prj", "hidden", "-"}));

    std::vector<std::string> titles;
    const auto title = [&] { titles.push_back(frame.documentName() + (frame.documentModified() ? "*" : "")); };
    project::Projects& projects = program.projects();
    projects.NewProject();
    title();
    projects.manager().DefinitionList.setText("A=1");
    title();
    platform.queueFileDialog({forms::FileDialogResult::Outcome::Chosen, "dir/a.prj", {}});
    std::filesystem::create_directory("dir");
    projects.SaveAsproject();
    title();
    projects.manager().displayProg(1).operatorClick();
    title();
    platform.queueAnswer(forms::MessageAnswer::Yes);
    projects.manager().unload();
    title();
    EXPECT_EQ(titles, (std::vector<std::string>{"Untitled", "Untitled*", "a.prj", "a.prj*", ""}));
}

} // namespace
} // namespace marlune::shell
