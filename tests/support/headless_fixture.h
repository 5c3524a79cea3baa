#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "headless/scripted_controller.h"
#include "link/controller_link.h"

namespace marlune::testing {

// The headless platform and the scripted controller installed for the forms, a fresh link
// record of kind 1, and an empty working directory for the files the program writes.
class HeadlessFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        forms::SetPlatform(&platform);
        link::SetCom(&controller);
        link::ResetLink();
        link::Link().linkKind = 1;
        link::Link().linkHandle = 1;
        previousDir_ = std::filesystem::current_path();
        workDir_ = std::filesystem::temp_directory_path()
                   / ("marlune-test-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(workDir_);
        std::filesystem::create_directories(workDir_);
        std::filesystem::current_path(workDir_);
    }

    void TearDown() override
    {
        std::filesystem::current_path(previousDir_);
        std::filesystem::remove_all(workDir_);
        forms::SetPlatform(nullptr);
        link::SetCom(nullptr);
    }

    // The request frames of every exchange so far, whole (CR included).
    std::vector<std::string> frames() const
    {
        std::vector<std::string> out;
        for (const headless::ComCall& call : controller.calls()) {
            if (call.operation == headless::ComCall::Operation::Exchange)
                out.push_back(call.bytes);
        }
        return out;
    }

    std::vector<std::string> messages() const
    {
        std::vector<std::string> out;
        for (const headless::ShownMessage& m : platform.messages())
            out.push_back(m.request.text);
        return out;
    }

    headless::HeadlessPlatform platform;
    headless::ScriptedController controller;

private:
    std::filesystem::path previousDir_;
    std::filesystem::path workDir_;
};

} // namespace marlune::testing
