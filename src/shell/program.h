#pragma once

#include <memory>
#include <string_view>

namespace marlune::forms {
class Form;
}
namespace marlune::tools {
class Terminal;
class ProgramViewer;
} // namespace marlune::tools
namespace marlune::transfer {
class Status;
class CompareMemory;
} // namespace marlune::transfer
namespace marlune::project {
class Projects;
}
namespace marlune::panel {
class MainControl;
class NewPos;
class MonitorAI;
} // namespace marlune::panel

namespace marlune::shell {

class FrmMain;

// The running program: its global state and the single instances of its forms, each made at
// first use and used again after it was closed. A new Program starts from a clean slate
// (no link settings read, no link, no forms), which is how every scenario starts.
class Program final {
public:
    Program();
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Start-up: reads the link settings, then creates and shows the frame, not modally.
    void Main();

    FrmMain& frame();
    tools::Terminal& terminal();
    panel::MainControl& mainControl();
    transfer::Status& status();
    transfer::CompareMemory& compareMemory();
    project::Projects& projects();

    // A form that exists now, by the name the scenarios and tests use ("frmMain", "Terminal",
    // "frmProjectProgram[2]"); nothing when there is none.
    forms::Form* findForm(std::string_view name);

private:
    std::unique_ptr<FrmMain> frame_;
    std::unique_ptr<tools::Terminal> terminal_;
    std::unique_ptr<transfer::Status> status_;
    std::unique_ptr<transfer::CompareMemory> compareMemory_;
    std::unique_ptr<tools::ProgramViewer> programViewer_;
    std::unique_ptr<panel::NewPos> newPos_;
    std::unique_ptr<panel::MonitorAI> monitorAI_;
    std::unique_ptr<panel::MainControl> mainControl_;
    std::unique_ptr<project::Projects> projects_;
};

} // namespace marlune::shell
