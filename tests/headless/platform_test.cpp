#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "test_forms.h"

namespace marlune::headless {
namespace {

using testing::PlatformTest;
using testing::TestForm;

class ClockTest : public PlatformTest {
protected:
    forms::Timer& addTimer(TestForm& form, const std::string& name, int interval)
    {
        auto& timer = form.add<forms::Timer>(name, interval);
        timer.onTick = [this, name] { tick(name); };
        return timer;
    }

    void tick(const std::string& name)
    {
        ticks += (ticks.empty() ? "" : " ") + name + "@" + std::to_string(platform.now());
    }

    std::string ticks; // which timer ticked when: "name@ms ..."
};

TEST_F(ClockTest, TimersFallDueInTimeOrderAndTiesInTheOrderTheyWereArmed)
{
    TestForm form("A");
    addTimer(form, "slow", 30);
    addTimer(form, "first", 20);
    addTimer(form, "second", 20);
    ASSERT_TRUE(form.load());
    EXPECT_TRUE(platform.advance(60));
    EXPECT_EQ(ticks, "first@20 second@20 slow@30 first@40 second@40 slow@60 first@60 second@60");
    EXPECT_EQ(platform.now(), 60);
}

TEST_F(ClockTest, ANewIntervalOrARestartCountsFromThatMomentAndATimerMayStopItself)
{
    TestForm form("A");
    forms::Timer& timer = addTimer(form, "t", 100);
    forms::Timer& once = addTimer(form, "once", 10);
    once.onTick = [&] {
        tick("once");
        once.setTimerEnabled(false);
    };
    ASSERT_TRUE(form.load());
    platform.advance(150);
    timer.setInterval(30);
    platform.advance(200);
    timer.setTimerEnabled(false);
    platform.advance(300);
    timer.setTimerEnabled(true);
    platform.advance(340);
    EXPECT_EQ(ticks, "once@10 t@100 t@180 t@330");
    EXPECT_FALSE(platform.dueTime(once));
}

// The rest of a wait that a tick cut short by closing the modal form is the caller's.
TEST_F(ClockTest, AdvanceStopsWhenATickClosesTheModalForm)
{
    TestForm dialog("Dialog");
    addTimer(dialog, "closer", 250).onTick = [&] { dialog.unload(); };
    bool reached = true;
    driver.steps.push_back([&](forms::Form&) { reached = platform.advance(1000); });
    forms::ShowModal(dialog, nullptr);
    EXPECT_FALSE(reached);
    EXPECT_EQ(platform.now(), 250);
    EXPECT_TRUE(platform.modalForms().empty());
}

TEST_F(ClockTest, NestedModalShowingsReturnInnermostFirst)
{
    TestForm frame("Frame");
    TestForm outer("Outer");
    TestForm inner("Inner");
    std::vector<std::string> events;
    auto& open = outer.add<forms::Button>("OpenInner", "Open");
    open.onClick = [&] {
        forms::ShowModal(inner, &outer);
        events.push_back("inner returned, outer loaded " + std::to_string(outer.loaded()));
    };
    ASSERT_TRUE(frame.load());
    driver.steps.push_back([&](forms::Form& form) {
        EXPECT_EQ(&form, &outer);
        EXPECT_EQ(platform.modalForms(), (std::vector<forms::Form*>{&outer}));
        open.operatorClick();
    });
    driver.steps.push_back([&](forms::Form& form) {
        EXPECT_EQ(&form, &inner);
        EXPECT_EQ(platform.modalForms(), (std::vector<forms::Form*>{&outer, &inner}));
        inner.unload();
    });
    driver.steps.push_back([&](forms::Form& form) {
        EXPECT_EQ(&form, &outer);
        outer.unload();
    });
    forms::ShowModal(outer, &frame);
    events.push_back("outer returned");
    EXPECT_EQ(driver.showings, (std::vector<std::string>{"Outer", "Inner"}));
    EXPECT_EQ(events, (std::vector<std::string>{"inner returned, outer loaded 1", "outer returned"}));
    EXPECT_TRUE(driver.steps.empty());
}

TEST_F(ClockTest, AModalShowingWithoutADriverIsAFailureOfTheScript)
{
    platform.setModalDriver(nullptr);
    TestForm dialog("Dialog");
    EXPECT_THROW(forms::ShowModal(dialog, nullptr), UnansweredDialog);
    EXPECT_TRUE(platform.modalForms().empty());
}

// A box takes its answer from the front of the queue; what is left answers the next question, and
// a question with no fitting answer fails the script.
TEST_F(PlatformTest, MessageBoxesTakeTheirAnswersFromTheQueue)
{
    using forms::MessageAnswer;
    using forms::MessageButtons;
    struct Row {
        MessageButtons buttons;
        std::vector<MessageAnswer> queued;
        std::optional<MessageAnswer> answer; // none: the box fails the script
        bool left;
    };
    const Row rows[] = {{MessageButtons::OK, {}, MessageAnswer::OK, false},
                        {MessageButtons::OK, {MessageAnswer::OK}, MessageAnswer::OK, false},
                        {MessageButtons::OK, {MessageAnswer::No}, MessageAnswer::OK, true},
                        {MessageButtons::YesNo, {MessageAnswer::Yes}, MessageAnswer::Yes, false},
                        {MessageButtons::YesNo, {MessageAnswer::Yes, MessageAnswer::No}, MessageAnswer::Yes, true},
                        {MessageButtons::YesNo, {MessageAnswer::OK}, std::nullopt, true}};
    for (const Row& row : rows) {
        for (MessageAnswer a : row.queued)
            platform.queueAnswer(a);
        if (!row.answer) {
            EXPECT_THROW(forms::MsgBox("Sure?", row.buttons), UnansweredDialog);
            continue;
        }
        EXPECT_EQ(forms::MsgBox("Sure?", row.buttons, forms::MessageIcon::Question, "Title"), row.answer);
        const auto& shown = platform.messages().back();
        EXPECT_EQ(shown.request.text + " " + shown.request.title, "Sure? Title");
        EXPECT_EQ(shown.request.icon, forms::MessageIcon::Question);
        EXPECT_EQ(shown.answer, row.answer);
        if (!row.left)
            platform.queueAnswer(MessageAnswer::Yes);
        EXPECT_EQ(forms::MsgBox("Next?", MessageButtons::YesNo), row.left ? MessageAnswer::No : MessageAnswer::Yes);
    }
}

TEST_F(PlatformTest, FileAndPrintDialogsAnswerFromTheirQueues)
{
    platform.queueFileDialog({forms::FileDialogResult::Outcome::Chosen, "a.dat", {}});
    platform.queueFileDialog({forms::FileDialogResult::Outcome::Cancelled, {}, {}});
    platform.queuePrintDialog({forms::PrintDialogResult::Outcome::Cancelled, {}});
    forms::Platform& p = platform;
    EXPECT_EQ(p.fileDialog({"Save", "*.dat", "", true}).fileName, "a.dat");
    EXPECT_EQ(p.fileDialog({"Open", "*.dat", "", false}).outcome, forms::FileDialogResult::Outcome::Cancelled);
    EXPECT_THROW(p.fileDialog({"Again", "", "", false}), UnansweredDialog);
    EXPECT_EQ(platform.fileDialogs().size(), 3u);
    EXPECT_EQ(p.printDialog("Print").outcome, forms::PrintDialogResult::Outcome::Cancelled);
    EXPECT_THROW(p.printDialog("Print"), UnansweredDialog);
}

TEST_F(PlatformTest, TheFrameKnowsItsChildrenInOrderAndTheActiveOne)
{
    TestForm frame("frmMain");
    TestForm one("One");
    TestForm two("Two");
    TestForm stranger("Stranger");
    ASSERT_TRUE(frame.load() && one.load() && two.load() && stranger.load());
    forms::Platform& p = platform;
    p.showModeless(frame, nullptr);
    p.showModeless(one, &frame);
    p.showModeless(two, &frame);
    EXPECT_EQ(platform.frame(), &frame);
    EXPECT_EQ(platform.children(), (std::vector<forms::Form*>{&one, &two}));
    EXPECT_EQ(p.activeChild(), &two);
    p.activate(one);
    EXPECT_EQ(p.activeChild(), &one);
    p.activate(stranger);
    EXPECT_EQ(p.activeChild(), &one);
    one.unload();
    EXPECT_EQ(platform.children(), (std::vector<forms::Form*>{&two}));
    EXPECT_EQ(p.activeChild(), &two);
    two.unload();
    EXPECT_EQ(p.activeChild(), nullptr);
    EXPECT_FALSE(platform.lastArrangement());
    p.arrange(forms::Arrangement::TileVertical);
    EXPECT_EQ(platform.lastArrangement(), forms::Arrangement::TileVertical);
}

TEST_F(PlatformTest, SettingsClipboardPrintingAndHelpAreRecorded)
{
    forms::Platform& p = platform;
    p.saveSetting("Marlune Desk", "Settings", "MainLeft", "1500");
    p.saveSetting("Marlune Desk", "Settings", "MainLeft", "30");
    EXPECT_EQ(platform.setting("Settings", "MainLeft"), "30");
    EXPECT_FALSE(platform.setting("Settings", "MainTop"));
    p.setClipboardText("X1000\r\n");
    EXPECT_EQ(p.clipboardText(), "X1000\r\n");
    EXPECT_TRUE(p.printText("one"));
    EXPECT_TRUE(p.printText("two"));
    EXPECT_EQ(platform.printed(), (std::vector<std::string>{"one", "two"}));
    EXPECT_FALSE(p.showHelp("Manual.hlp", 11));
    ASSERT_TRUE(platform.lastHelp());
    EXPECT_EQ(platform.lastHelp()->file, "Manual.hlp");
    EXPECT_EQ(platform.lastHelp()->command, 11);
}

} // namespace
} // namespace marlune::headless
