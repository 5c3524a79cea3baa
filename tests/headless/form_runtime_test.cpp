// The event rules of the form runtime, run on the headless platform.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "test_forms.h"

namespace marlune::headless {
namespace {

using testing::PlatformTest;
using testing::TestForm;

class FormRuntime : public PlatformTest {
protected:
    TestForm form{"Panel"};
    std::vector<std::string> events;
};

TEST_F(FormRuntime, AFormThatUnloadsItselfInItsLoadIsNeverShown)
{
    auto& timer = form.add<forms::Timer>("Timer1", 100);
    form.onLoad = [&] { form.unload(); };
    EXPECT_FALSE(form.load());
    forms::ShowModal(form, nullptr);
    EXPECT_TRUE(driver.showings.empty());
    EXPECT_FALSE(form.loaded() || platform.dueTime(timer));
}

TEST_F(FormRuntime, TimersTickWhileTheirFormStaysLoadedAndStopWhenItUnloadsOrGoes)
{
    auto other = std::make_unique<TestForm>("Fresh");
    int ticks = 0;
    for (TestForm* f : {&form, other.get()})
        f->add<forms::Timer>("Timer1", 100).onTick = [&] { ++ticks; };
    bool refuse = true;
    form.onUnload = [&] { return !refuse; };
    ASSERT_TRUE(form.load() && other->load());
    EXPECT_FALSE(form.unload());
    platform.advance(250);
    EXPECT_EQ(ticks, 4) << "a refused unload keeps the form and its timers";
    refuse = false;
    EXPECT_TRUE(form.unload());
    other.reset();
    platform.advance(1000);
    EXPECT_EQ(ticks, 4);
}

// Every value a property shows, control by control.
std::string Snapshot(const forms::Form& form)
{
    std::string all;
    for (const forms::Control* c : form.controls()) {
        for (const char* name : {"text", "value", "picture", "interval", "enabled", "visible", "selstart"})
            all += c->name() + "." + name + "=" + c->property(name).value_or("-") + " ";
    }
    return all;
}

TEST_F(FormRuntime, EveryLoadStartsFromTheDesignedValuesWithoutEventsAndTimersCountFromIt)
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
    value.onChange = box.onClick = option.onClick = list.onClick = [&] { events.push_back("event"); };
    ASSERT_TRUE(form.unload());
    platform.advance(1000);
    ASSERT_TRUE(form.load());
    EXPECT_EQ(Snapshot(form), designed);
    EXPECT_EQ(list.items(), (std::vector<std::string>{"one"}));
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(platform.dueTime(timer), 1100);
}

TEST_F(FormRuntime, ATickWhileItsOwnMessageBoxIsOpenIsDroppedAndOtherTimersRun)
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

} // namespace
} // namespace marlune::headless
