// The headless platform: its clock and timers, modal showings and the waits across them, the
// dialogs it answers and records, and the rules of the form runtime that need a platform.
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "forms/form.h"
#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "headless/pending_wait.h"

namespace marlune::headless {
namespace {

// A form made up in a test: controls are added from outside, Load and Unload are lambdas.
class TestForm final : public forms::Form {
public:
    explicit TestForm(const std::string& name) : forms::Form(name, name) {}
    using forms::Form::add;

    std::function<void()> onLoad = [] {};
    std::function<bool()> onUnload = [] { return true; };

protected:
    void formLoad() override { onLoad(); }
    bool formUnload() override { return onUnload(); }
};

// Plays the steps of a test inside every modal showing, one after the other, until the
// form has unloaded.
class StepDriver final : public ModalDriver {
public:
    std::deque<std::function<void(forms::Form&)>> steps;
    std::vector<std::string> showings;

    void runUntilUnloaded(forms::Form& form) override
    {
        showings.push_back(form.name());
        while (form.loaded()) {
            ASSERT_FALSE(steps.empty()) << "no step left inside the modal showing of " << form.name();
            auto step = std::move(steps.front());
            steps.pop_front();
            step(form);
        }
    }
};

// The headless platform installed for the forms, with a step driver and a form to use.
class PlatformTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        forms::SetPlatform(&platform);
        platform.setModalDriver(&driver);
    }
    void TearDown() override { forms::SetPlatform(nullptr); }

    // A timer whose ticks are written down in `ticks`.
    forms::Timer& addTimer(TestForm& on, const std::string& name, int interval)
    {
        auto& timer = on.add<forms::Timer>(name, interval);
        timer.onTick = [this, name] { tick(name); };
        return timer;
    }
    void tick(const std::string& name)
    {
        ticks += (ticks.empty() ? "" : " ") + name + "@" + std::to_string(platform.now());
    }

    HeadlessPlatform platform;
    StepDriver driver;
    TestForm form{"Panel"};
    std::string ticks; // which timer ticked when: "name@ms ..."
};

TEST_F(PlatformTest, ANewIntervalOrARestartCountsFromThatMomentAndATimerMayStopItself)
{
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

TEST_F(PlatformTest, TimersTickWhileTheirFormStaysLoadedAndStopWhenItUnloadsOrGoes)
{
    auto other = std::make_unique<TestForm>("Fresh");
    auto& kept = addTimer(form, "kept", 100);
    addTimer(*other, "gone", 100);
    bool refuse = true;
    form.onUnload = [&] { return !refuse; };
    ASSERT_TRUE(form.load() && other->load());
    EXPECT_FALSE(form.unload()) << "a refused unload keeps the form and its timers";
    platform.advance(250);
    refuse = false;
    EXPECT_TRUE(form.unload());
    EXPECT_FALSE(platform.dueTime(kept));
    other.reset();
    platform.advance(1000);
    EXPECT_EQ(ticks, "kept@100 gone@100 kept@200 gone@200");
}

TEST_F(PlatformTest, AFormThatUnloadsItselfInItsLoadIsNeverShown)
{
    auto& timer = form.add<forms::Timer>("Timer1", 100);
    form.onLoad = [&] { form.unload(); };
    EXPECT_FALSE(form.load());
    forms::ShowModal(form, nullptr);
    EXPECT_TRUE(driver.showings.empty());
    EXPECT_FALSE(form.loaded() || platform.dueTime(timer));
}

// Every value a property shows, control by control.
std::string Snapshot(const forms::Form& form)
{
    std::string all;
    for (const forms::Control* c : form.controls()) {
        for (const char* name : {"text", "value", "picture", "interval", "enabled", "visible", "selstart", "sellength"})
            all += c->name() + "." + name + "=" + c->property(name).value_or("-") + " ";
    }
    return all;
}

TEST_F(PlatformTest, EveryLoadStartsFromTheDesignedValuesWithoutEventsAndTimersCountFromIt)
{
    auto& value = form.add<forms::TextBox>("Value", "0");
    auto& label = form.add<forms::Label>("Prompt", "Enter");
    auto& box = form.add<forms::CheckBox>("Sel1", "X", 1);
    auto& option = form.add<forms::OptionButton>("Pulse", "kind", "Pulse");
    auto& picture = form.add<forms::Picture>("Led", "LedOff");
    auto& bar = form.add<forms::ProgressBar>("Progress", 0, 100);
    auto& list = form.add<forms::ListBox>("Lines");
    auto& timer = form.add<forms::Timer>("Timer1", 100);
    list.addItem("one");
    const std::string designed = Snapshot(form);
    ASSERT_TRUE(form.load());
    value.operatorType("12");
    value.setSelLength(1);
    label.setCaption("Done");
    label.setEnabled(false);
    picture.setVisible(false);
    box.setValue(0);
    option.setValue(true);
    picture.setPicture("LedOn");
    bar.setValue(40);
    list.addItem("two");
    list.setListIndex(1);
    timer.setInterval(50);
    timer.setTimerEnabled(false);
    EXPECT_NE(Snapshot(form), designed);
    value.onChange = box.onClick = option.onClick = list.onClick = [&] { tick("event"); };
    ASSERT_TRUE(form.unload());
    platform.advance(1000);
    ASSERT_TRUE(form.load());
    EXPECT_EQ(Snapshot(form), designed);
    EXPECT_EQ(list.items(), (std::vector<std::string>{"one"}));
    EXPECT_EQ(ticks, "");
    EXPECT_EQ(platform.dueTime(timer), 1100);
}

TEST_F(PlatformTest, ATickWhileItsOwnMessageBoxIsOpenIsDroppedAndOtherTimersRun)
{
    auto& failing = form.add<forms::Timer>("Timer1", 100);
    auto& other = form.add<forms::Timer>("AITimer", 30);
    int failingTicks = 0;
    int otherTicks = 0;
    failing.onTick = [&] {
        if (++failingTicks == 1)
            forms::MsgBox("Error Communication!");
    };
    other.onTick = [&] { ++otherTicks; };
    ASSERT_TRUE(form.load());
    platform.setMessageDwell(350);
    platform.advance(100);
    // The box was open from 100 to 450: Timer1 fell due at 200, 300 and 400 and was dropped.
    EXPECT_EQ(failingTicks, 1);
    EXPECT_EQ(platform.now(), 450);
    EXPECT_EQ(otherTicks, 15) << "AITimer ticked every 30 ms up to 450";
    platform.advance(500);
    EXPECT_EQ(failingTicks, 2);
    EXPECT_EQ(platform.messages().size(), 1u);
}

// The member form, as the frame, shows Dialog modally at 50 ms by its timer; the dialog closes itself
// by its own timer at 250 ms, and Other at 100 ms. The step inside the showing stands for the
// statements read there: the outer wait ends when Other closes, then a wait of 300 ms begins, which
// the dialog's close interrupts.
TEST_F(PlatformTest, AWaitBegunInsideAModalShowingReplacesTheOuterOneWhichStopsThere)
{
    TestForm dialog("Dialog");
    TestForm other("Other");
    PendingWait waiting{platform};
    auto& opener = form.add<forms::Timer>("Opener", 50);
    opener.onTick = [&] {
        opener.setTimerEnabled(false);
        forms::ShowModal(dialog, &form);
    };
    dialog.add<forms::Timer>("Closer", 200).onTick = [&] { dialog.unload(); };
    other.add<forms::Timer>("SelfClose", 100).onTick = [&] { other.unload(); };
    ASSERT_TRUE(form.load() && other.load());
    driver.steps.push_back([&](forms::Form&) {
        waiting.finish();
        EXPECT_EQ(platform.now(), 100);
        waiting.begin(300, nullptr, {}, 9);
    });
    waiting.begin(1000, &other, "Other is still shown", 5);
    EXPECT_EQ(platform.now(), 400);
}

// An OK box takes a queued OK but leaves any other answer for the next question; a question fails the
// script on an answer that is none of its buttons. What a box shows and what a question takes from the
// front of the queue the scenarios read.
TEST_F(PlatformTest, AnOkBoxLeavesAnAnswerMeantForAQuestionAndAQuestionTakesOnlyYesOrNo)
{
    using forms::MessageAnswer;
    platform.queueAnswer(MessageAnswer::OK);
    platform.queueAnswer(MessageAnswer::No);
    EXPECT_EQ(forms::MsgBox("Done"), MessageAnswer::OK);
    EXPECT_EQ(forms::MsgBox("Done"), MessageAnswer::OK);
    EXPECT_EQ(forms::MsgBox("Sure?", forms::MessageButtons::YesNo), MessageAnswer::No);
    platform.queueAnswer(MessageAnswer::OK);
    EXPECT_THROW(forms::MsgBox("Sure?", forms::MessageButtons::YesNo), UnansweredDialog);
}

// File dialogs answer from their queue in order; a dialog with nothing queued, or a modal showing
// with nothing to drive it, fails the script.
TEST_F(PlatformTest, DialogsAnswerFromTheirQueuesAndFailTheScriptWhenNothingAnswers)
{
    platform.queueFileDialog({forms::FileDialogResult::Outcome::Chosen, "a.dat", {}});
    platform.queueFileDialog({forms::FileDialogResult::Outcome::Cancelled, {}, {}});
    forms::Platform& p = platform;
    EXPECT_EQ(p.fileDialog({"Save", "*.dat", "", true, true, ""}).fileName, "a.dat");
    EXPECT_EQ(p.fileDialog({"Open", "*.dat", "", false, false, ""}).outcome,
              forms::FileDialogResult::Outcome::Cancelled);
    EXPECT_THROW(p.fileDialog({"Again", "", "", false, false, ""}), UnansweredDialog);
    EXPECT_THROW(p.printDialog("Print"), UnansweredDialog);
    platform.setModalDriver(nullptr);
    EXPECT_THROW(forms::ShowModal(form, nullptr), UnansweredDialog);
    EXPECT_TRUE(platform.modalForms().empty());
}

TEST_F(PlatformTest, TheFrameKnowsItsChildrenInOrderAndTheActiveOne)
{
    TestForm one("One");
    TestForm two("Two");
    TestForm stranger("Stranger");
    ASSERT_TRUE(form.load() && one.load() && two.load() && stranger.load());
    forms::Platform& p = platform;
    p.showModeless(form, nullptr);
    p.showModeless(one, &form);
    p.showModeless(two, &form);
    EXPECT_EQ(platform.frame(), &form);
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
}

} // namespace
} // namespace marlune::headless
