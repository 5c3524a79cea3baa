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

struct CheckCase {
    int start;
    std::vector<int> values;
    int clicks;
};

void PrintTo(const CheckCase& c, std::ostream* os) { *os << "from " << c.start << ", " << c.values.size() << " sets"; }

class CheckBoxClicks : public FormRuntime, public ::testing::WithParamInterface<CheckCase> {};

TEST_P(CheckBoxClicks, OnlyAChangedValueRaisesClick)
{
    auto& box = form.add<forms::CheckBox>("Sel1", "X", GetParam().start);
    int clicks = 0;
    box.onClick = [&] { ++clicks; };
    for (int value : GetParam().values)
        box.setValue(value);
    EXPECT_EQ(clicks, GetParam().clicks);
    EXPECT_EQ(box.value(), GetParam().values.back());
}

INSTANTIATE_TEST_SUITE_P(Values, CheckBoxClicks,
                         ::testing::Values(CheckCase{0, {1}, 1}, CheckCase{0, {0}, 0}, CheckCase{1, {1, 1}, 0},
                                           CheckCase{0, {1, 1, 0}, 2}));

TEST_F(FormRuntime, AnOperatorClickTogglesACheckBoxWithOneClickEach)
{
    auto& box = form.add<forms::CheckBox>("JoyOn", "Joy");
    box.onClick = [&] { events.push_back("click " + std::to_string(box.value())); };
    box.operatorClick();
    box.operatorClick();
    EXPECT_EQ(events, (std::vector<std::string>{"click 1", "click 0"}));
}

TEST_F(FormRuntime, OptionButtonsOfAGroupAreExclusiveAndTheChosenOneRaisesClick)
{
    auto& normal = form.add<forms::OptionButton>("HomingModeNormal", "homing", "Normal", true);
    auto& limit = form.add<forms::OptionButton>("HomingModeLimit", "homing", "Limit");
    auto& other = form.add<forms::OptionButton>("SelUSB", "link", "USB", true);
    for (forms::OptionButton* b : {&normal, &limit, &other})
        b->onClick = [&, b] { events.push_back(b->name()); };
    limit.operatorClick();
    EXPECT_FALSE(normal.value());
    EXPECT_TRUE(limit.value());
    EXPECT_TRUE(other.value());
    limit.setValue(true);
    normal.setValue(true);
    EXPECT_FALSE(limit.value());
    EXPECT_EQ(events, (std::vector<std::string>{"HomingModeLimit", "HomingModeNormal"}));
}

TEST_F(FormRuntime, TextRaisesChangeForEveryRealChange)
{
    auto& box = form.add<forms::TextBox>("CommandLine");
    box.onChange = [&] { events.push_back(box.text()); };
    box.setText("X1");
    box.setText("X1");
    box.setSelStart(2);
    box.operatorType("0;");
    box.operatorSetText("");
    EXPECT_EQ(events, (std::vector<std::string>{"X1", "X10", "X10;", ""}));
}

TEST_F(FormRuntime, ARefusedUnloadKeepsTheFormAndItsTimers)
{
    int ticks = 0;
    auto& timer = form.add<forms::Timer>("Timer1", 100);
    timer.onTick = [&] { ++ticks; };
    bool refuse = true;
    form.onUnload = [&] { return !refuse; };
    ASSERT_TRUE(form.load());
    ASSERT_TRUE(form.unload() == false);
    EXPECT_TRUE(form.loaded());
    platform.advance(250);
    EXPECT_EQ(ticks, 2);
    refuse = false;
    EXPECT_TRUE(form.unload());
    platform.advance(1000);
    EXPECT_EQ(ticks, 2);
    EXPECT_FALSE(platform.dueTime(timer));
}

TEST_F(FormRuntime, AFormDestroyedWhileLoadedTakesItsTimersWithIt)
{
    auto other = std::make_unique<TestForm>("Fresh");
    int ticks = 0;
    auto& timer = other->add<forms::Timer>("Timer1", 100);
    timer.onTick = [&] { ++ticks; };
    ASSERT_TRUE(other->load());
    platform.advance(150);
    other.reset();
    platform.advance(1000);
    EXPECT_EQ(ticks, 1);
}

TEST_F(FormRuntime, ALoadStartsFromTheDesignedValuesAndTimersCountFromIt)
{
    TestForm dialog("NewPos");
    auto& value = dialog.add<forms::TextBox>("Value", "0");
    auto& timer = dialog.add<forms::Timer>("Timer1", 100);
    std::vector<std::int64_t> ticks;
    timer.onTick = [&] { ticks.push_back(platform.now()); };
    driver.steps.push_back([&](forms::Form&) {
        value.operatorType("12");
        platform.advance(150);
        dialog.unload();
    });
    ASSERT_TRUE(form.load());
    forms::ShowModal(dialog, &form);
    platform.advance(1000);
    driver.steps.push_back([&](forms::Form&) {
        EXPECT_EQ(value.text(), "0");
        platform.advance(1100);
        dialog.unload();
    });
    forms::ShowModal(dialog, &form);
    EXPECT_EQ(ticks, (std::vector<std::int64_t>{100, 1100}));
}

TEST_F(FormRuntime, TicksOfAFormBehindAModalOneRunWhileItIsUp)
{
    auto& poll = form.add<forms::Timer>("Timer1", 500);
    int polls = 0;
    poll.onTick = [&] { ++polls; };
    TestForm dialog("MonitorAI");
    ASSERT_TRUE(form.load());
    driver.steps.push_back([&](forms::Form&) {
        platform.advance(1600);
        EXPECT_EQ(polls, 3);
        dialog.unload();
    });
    forms::ShowModal(dialog, &form);
    EXPECT_EQ(polls, 3);
}

TEST_F(FormRuntime, ATickWhileItsOwnMessageBoxIsOpenIsDroppedAndOtherTimersRun)
{
    auto& failing = form.add<forms::Timer>("Timer1", 100);
    auto& other = form.add<forms::Timer>("AITimer", 30);
    int failingTicks = 0;
    std::vector<std::int64_t> otherTicks;
    failing.onTick = [&] {
        ++failingTicks;
        if (failingTicks == 1)
            forms::MsgBox("Error Communication!");
    };
    other.onTick = [&] { otherTicks.push_back(platform.now()); };
    ASSERT_TRUE(form.load());
    platform.setMessageDwell(350);
    platform.advance(100);
    // The box was open from 100 to 450: Timer1 fell due at 200, 300 and 400 and was dropped.
    EXPECT_EQ(failingTicks, 1);
    EXPECT_EQ(platform.now(), 450);
    EXPECT_EQ(otherTicks,
              (std::vector<std::int64_t>{30, 60, 90, 120, 150, 180, 210, 240, 270, 300, 330, 360, 390, 420, 450}));
    platform.advance(500);
    EXPECT_EQ(failingTicks, 2);
    EXPECT_EQ(platform.messages().size(), 1u);
}

} // namespace
} // namespace marlune::headless
