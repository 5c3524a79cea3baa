#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "forms/form.h"
#include "forms/platform.h"
#include "headless/headless_platform.h"

namespace marlune::headless::testing {

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
            if (steps.empty()) {
                ADD_FAILURE() << "no step left inside the modal showing of " << form.name();
                form.unload();
                return;
            }
            auto step = std::move(steps.front());
            steps.pop_front();
            step(form);
        }
    }
};

// The headless platform installed for the forms, with a step driver.
class PlatformTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        forms::SetPlatform(&platform);
        platform.setModalDriver(&driver);
    }
    void TearDown() override { forms::SetPlatform(nullptr); }

    HeadlessPlatform platform;
    StepDriver driver;
};

} // namespace marlune::headless::testing
