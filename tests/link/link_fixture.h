#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "headless/scripted_controller.h"
#include "link/controller_link.h"

namespace marlune::link {

// A fresh link record over the scripted controller, in an empty working directory.
class LinkFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        forms::SetPlatform(&platform);
        SetCom(&controller);
        ResetLink();
        Link().linkKind = 1;
        Link().linkHandle = 1;
        previousDir = std::filesystem::current_path();
        workDir = std::filesystem::temp_directory_path()
                  / ("marlune-link-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(workDir);
        std::filesystem::create_directories(workDir);
        std::filesystem::current_path(workDir);
    }

    void TearDown() override
    {
        std::filesystem::current_path(previousDir);
        std::filesystem::remove_all(workDir);
        forms::SetPlatform(nullptr);
        SetCom(nullptr);
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
    std::filesystem::path previousDir;
    std::filesystem::path workDir;
};

} // namespace marlune::link
