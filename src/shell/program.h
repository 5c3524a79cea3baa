#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "link/link_settings.h"

namespace marlune::forms {
class Form;
}
namespace marlune::tools {
class Terminal;
class ProgramViewer;
class CommunicationLog;
} // namespace marlune::tools
namespace marlune::transfer {
class Status;
class CompareMemory;
} // namespace marlune::transfer
namespace marlune::project {
class Projects;
}
namespace marlune::config {
class Setup;
class SetupJoystick;
class SetupEncoderControl;
class ComSetup;
class DevSerListSel;
} // namespace marlune::config
namespace marlune::panel {
class MainControl;
class NewPos;
class MonitorAI;
} // namespace marlune::panel

namespace marlune::shell {

class FrmMain;
class FrmAbout;

// The application's help file: the controller language manual, handed to the help viewer.
inline constexpr const char* kHelpFile = "Marlune KV Language Manual.hlp";

// The running program: its global state and the single instances of its forms, each made at
// first use and used again after it was closed. A new Program starts from a clean slate
// (no link settings read, no link, no forms), which is how every scenario starts.
class Program final {
public:
    Program();
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Start-up: reads the link settings, then creates and shows the frame, not modally, and
    // tells the operator when the settings file could not be used.
    void Main();

    FrmMain& frame();
    tools::Terminal& terminal();
    tools::CommunicationLog& communicationLog();
    panel::MainControl& mainControl();
    transfer::Status& status();
    transfer::CompareMemory& compareMemory();
    project::Projects& projects();
    config::Setup& setup();
    config::SetupJoystick& setupJoystick();
    config::SetupEncoderControl& setupEncoderControl();
    config::ComSetup& comSetup();
    config::DevSerListSel& devSerListSel();
    FrmAbout& about();

    // The help file handed to the viewer; empty where no manual is installed.
    std::string helpFile = kHelpFile;
    // Which implementation serves each link kind on this machine, for the communication setup.
    std::string servingLinks;
    // A link chosen for this run only, over what marlunecom.ini says; the file stays as it is.
    std::optional<link::LinkSettings> linkForRun;
    // The controller maker's library serves every link kind.
    bool makersLibrary = false;

    // A form that exists now, by the name the scenarios and tests use ("frmMain", "Terminal",
    // "frmProjectProgram[2]"); nothing when there is none.
    forms::Form* findForm(std::string_view name);

private:
    std::unique_ptr<FrmMain> frame_;
    std::unique_ptr<tools::Terminal> terminal_;
    std::unique_ptr<tools::CommunicationLog> communicationLog_;
    std::unique_ptr<transfer::Status> status_;
    std::unique_ptr<transfer::CompareMemory> compareMemory_;
    std::unique_ptr<tools::ProgramViewer> programViewer_;
    std::unique_ptr<panel::NewPos> newPos_;
    std::unique_ptr<panel::MonitorAI> monitorAI_;
    std::unique_ptr<panel::MainControl> mainControl_;
    std::unique_ptr<project::Projects> projects_;
    std::unique_ptr<config::Setup> setup_;
    std::unique_ptr<config::SetupJoystick> setupJoystick_;
    std::unique_ptr<config::SetupEncoderControl> setupEncoderControl_;
    std::unique_ptr<config::ComSetup> comSetup_;
    std::unique_ptr<config::DevSerListSel> devSerListSel_;
    std::unique_ptr<FrmAbout> about_;
};

} // namespace marlune::shell
