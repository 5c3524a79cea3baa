#include "shell/program.h"

#include "config/com_setup.h"
#include "config/setup.h"
#include "config/setup_encoder_control.h"
#include "config/setup_joystick.h"
#include "forms/platform.h"
#include "link/controller_link.h"
#include "link/link_settings.h"
#include "panel/main_control.h"
#include "panel/monitor_ai.h"
#include "panel/new_pos.h"
#include "panel/scope.h"
#include "project/project_manager.h"
#include "project/project_program.h"
#include "project/projects.h"
#include "shell/frm_about.h"
#include "shell/frm_main.h"
#include "tools/communication_log.h"
#include "tools/program_viewer.h"
#include "tools/terminal.h"
#include "transfer/compare_memory.h"
#include "transfer/status.h"

namespace marlune::shell {

Program::Program() { link::ResetLink(); }

Program::~Program() = default;

void Program::Main()
{
    link::ControllerLink& link = link::Link();
    const std::string problem = link::LoadLinkSettings(link.linkKind, link.ipAddress, link.comPort);
    if (linkForRun) {
        link.linkKind = linkForRun->linkKind;
        link.ipAddress = linkForRun->ipAddress;
        link.comPort = linkForRun->comPort;
        link.linkAddress = link::LinkAddressFor(link.linkKind, link.ipAddress, link.comPort);
    }
    FrmMain& main = frame();
    if (main.load())
        forms::CurrentPlatform().showModeless(main, nullptr);
    // A link chosen for the run makes what marlunecom.ini says beside the point.
    if (!problem.empty() && !linkForRun)
        forms::MsgBox(problem, forms::MessageButtons::OK, forms::MessageIcon::Exclamation);
}

FrmMain& Program::frame()
{
    if (!frame_)
        frame_ = std::make_unique<FrmMain>(*this);
    return *frame_;
}

tools::Terminal& Program::terminal()
{
    if (!terminal_)
        terminal_ = std::make_unique<tools::Terminal>();
    return *terminal_;
}

panel::MainControl& Program::mainControl()
{
    if (!mainControl_) {
        newPos_ = std::make_unique<panel::NewPos>();
        monitorAI_ = std::make_unique<panel::MonitorAI>();
        programViewer_ = std::make_unique<tools::ProgramViewer>(status());
        mainControl_ = std::make_unique<panel::MainControl>(*newPos_, *monitorAI_, *programViewer_);
    }
    return *mainControl_;
}

transfer::Status& Program::status()
{
    if (!status_)
        status_ = std::make_unique<transfer::Status>();
    return *status_;
}

transfer::CompareMemory& Program::compareMemory()
{
    if (!compareMemory_)
        compareMemory_ = std::make_unique<transfer::CompareMemory>();
    return *compareMemory_;
}

project::Projects& Program::projects()
{
    if (!projects_)
        projects_ = std::make_unique<project::Projects>(frame(), status());
    return *projects_;
}

namespace {

// Each separate form has a single instance, made at first use.
template <class F, class... Args>
F& Made(std::unique_ptr<F>& form, Args&&... args)
{
    if (!form)
        form = std::make_unique<F>(std::forward<Args>(args)...);
    return *form;
}

} // namespace

config::Setup& Program::setup() { return Made(setup_); }

config::SetupJoystick& Program::setupJoystick() { return Made(setupJoystick_); }

config::SetupEncoderControl& Program::setupEncoderControl() { return Made(setupEncoderControl_); }

config::ComSetup& Program::comSetup() { return Made(comSetup_, servingLinks); }

config::DevSerListSel& Program::devSerListSel() { return Made(devSerListSel_); }

FrmAbout& Program::about() { return Made(about_); }

tools::CommunicationLog& Program::communicationLog() { return Made(communicationLog_); }

namespace {

// "frmProjectProgram[n]" names the window of program n.
forms::Form* ProjectProgramWindow(project::Projects* projects, std::string_view name)
{
    constexpr std::string_view prefix = "frmProjectProgram[";
    if (!projects || name.size() != prefix.size() + 2 || !name.starts_with(prefix) || name.back() != ']')
        return nullptr;
    const int n = name[prefix.size()] - '0';
    return n >= 1 && n <= project::ProgramCount ? projects->programWindow(n) : nullptr;
}

} // namespace

forms::Form* Program::findForm(std::string_view name)
{
    if (name == "frmMain")
        return frame_.get();
    if (name == "Terminal")
        return terminal_.get();
    if (name == "CommunicationLog")
        return communicationLog_.get();
    if (name == "MainControl")
        return mainControl_.get();
    if (name == "NewPos")
        return newPos_.get();
    if (name == "Scope")
        return mainControl_ ? &mainControl_->scope() : nullptr;
    if (name == "MonitorAI")
        return monitorAI_.get();
    if (name == "Status")
        return status_.get();
    if (name == "ProgramViewer")
        return programViewer_.get();
    if (name == "frmCompareMemory")
        return compareMemory_.get();
    if (name == "Setup")
        return setup_.get();
    if (name == "SetupJoystick")
        return setupJoystick_.get();
    if (name == "SetupEncoderControl")
        return setupEncoderControl_.get();
    if (name == "ComSetup")
        return comSetup_.get();
    if (name == "DevSerListSel")
        return devSerListSel_.get();
    if (name == "frmAbout")
        return about_.get();
    if (name == "frmProjectManager")
        return projects_ ? projects_->madeManager() : nullptr;
    return ProjectProgramWindow(projects_.get(), name);
}

} // namespace marlune::shell
