#include <gtest/gtest.h>

#include "headless/pending_wait.h"
#include "headless/scenario_failure.h"
#include "test_forms.h"

namespace marlune::headless {
namespace {

using testing::PlatformTest;
using testing::TestForm;

// A frame whose timer shows a dialog modally at 50 ms; the dialog closes itself by its own
// timer at `closeAt`. The steps inside the showing stand for the statements read there.
class WaitAcrossShowings : public PlatformTest {
protected:
    void prepare(int closeAt)
    {
        auto& opener = frame.add<forms::Timer>("Opener", 50);
        opener.onTick = [&] {
            opener.setTimerEnabled(false);
            forms::ShowModal(dialog, &frame);
        };
        auto& closer = dialog.add<forms::Timer>("Closer", closeAt - 50);
        closer.onTick = [&] { dialog.unload(); };
        ASSERT_TRUE(frame.load());
    }

    TestForm frame{"Frame"};
    TestForm dialog{"Dialog"};
    PendingWait waiting{platform};
};

TEST_F(WaitAcrossShowings, AClosingModalFormInterruptsTheWaitAndTheOuterLevelFinishesIt)
{
    prepare(500);
    std::int64_t insideUntil = 0;
    driver.steps.push_back([&](forms::Form&) {
        waiting.finish();
        insideUntil = platform.now();
    });
    waiting.begin(1000, nullptr, {}, 7);
    EXPECT_EQ(insideUntil, 500);
    EXPECT_EQ(platform.now(), 1000);
    EXPECT_FALSE(waiting.line());
}

TEST_F(WaitAcrossShowings, AWaitBegunInsideReplacesTheOuterOneWhichStopsThere)
{
    prepare(250);
    TestForm other("Other");
    auto& selfClose = other.add<forms::Timer>("SelfClose", 100);
    selfClose.onTick = [&] { other.unload(); };
    ASSERT_TRUE(other.load());
    // Inside the showing: the outer wait ends when Other closes at 100, then a wait of 300 ms
    // begins, which the dialog's close at 250 interrupts.
    driver.steps.push_back([&](forms::Form&) {
        waiting.finish();
        EXPECT_EQ(platform.now(), 100);
        waiting.begin(300, nullptr, {}, 9);
    });
    waiting.begin(1000, &other, "Other is still shown", 5);
    EXPECT_EQ(platform.now(), 400);
}

TEST_F(WaitAcrossShowings, AFormThatStaysFailsAtItsWaitsLine)
{
    prepare(500);
    driver.steps.push_back([&](forms::Form&) { waiting.finish(); });
    try {
        waiting.begin(2000, &frame, "Frame is still shown after 2000ms", 12);
        FAIL() << "no failure";
    } catch (const ScenarioFailure& failure) {
        EXPECT_EQ(failure.line(), 12);
        EXPECT_STREQ(failure.what(), "Frame is still shown after 2000ms");
    }
    EXPECT_EQ(platform.now(), 2000);
}

} // namespace
} // namespace marlune::headless
