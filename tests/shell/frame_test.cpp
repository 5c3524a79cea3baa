#include <gtest/gtest.h>

#include <set>

#include "headless_fixture.h"
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
    int entries = 0;
    for (forms::Control* control : program.frame().controls()) {
        const auto* item = dynamic_cast<const forms::MenuItem*>(control);
        if (!item)
            continue;
        ++entries;
        EXPECT_TRUE(item->parent().empty() || seen.count(item->parent())) << item->name();
        EXPECT_TRUE(seen.insert(item->name()).second) << "twice: " << item->name();
    }
    EXPECT_EQ(entries, 41);
}

TEST_F(Frame, AToolBarKeyIsComparedExactly)
{
    program.Main();
    FrmMain& frame = program.frame();
    EXPECT_FALSE(frame.tbToolBar.pressButton("Terminal"));
    EXPECT_FALSE(frame.tbToolBar.pressButton(""));
    EXPECT_EQ(frame.tbToolBar.buttons().size(), 22u);
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

} // namespace
} // namespace marlune::shell
