#pragma once

#include "forms/files.h"
#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "headless/scripted_controller.h"
#include "link/controller_link.h"
#include "panel/main_control.h"
#include "panel/monitor_ai.h"
#include "panel/new_pos.h"
#include "tools/program_viewer.h"
#include "transfer/status.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace marlune::fuzz {

// A fresh headless platform and scripted controller of kind 1 for each input, so that nothing
// one input logs weighs on the next; the motion panel's forms are made once.
struct PanelFixture {
    PanelFixture()
    {
        forms::SetPlatform(&platform);
        link::SetCom(&controller);
        link::ResetLink();
        link::Link().linkKind = 1;
    }
    ~PanelFixture()
    {
        link::SetCom(nullptr);
        forms::SetPlatform(nullptr);
    }
    PanelFixture(const PanelFixture&) = delete;
    PanelFixture& operator=(const PanelFixture&) = delete;

    panel::MainControl& mainControl() const
    {
        static transfer::Status status;
        static tools::ProgramViewer programViewer{status};
        static panel::NewPos newPos;
        static panel::MonitorAI monitorAI;
        static panel::MainControl form{newPos, monitorAI, programViewer};
        return form;
    }

    headless::HeadlessPlatform platform;
    headless::ScriptedController controller;
};

// Runs the target in a directory of its own for the files it reads and writes, removed at exit.
inline int EnterWorkDirectory(const std::string& name)
{
    static const auto dir =
            std::filesystem::temp_directory_path() / ("marlune-fuzz-" + name + "-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    std::filesystem::current_path(dir);
    return std::atexit([] {
        std::error_code ignored;
        std::filesystem::current_path(dir.parent_path(), ignored);
        std::filesystem::remove_all(dir, ignored);
    });
}

inline void WriteInput(const std::string& file, const std::uint8_t* data, std::size_t size)
{
    if (!forms::WriteFileAtomically(file, std::string(reinterpret_cast<const char*>(data), size)).empty())
        std::abort();
}

} // namespace marlune::fuzz
