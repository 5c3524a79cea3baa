#include "project/project_program.h"

#include <string>

#include "forms/platform.h"
#include "link/bit_arithmetic.h"
#include "link/command_exchange.h"
#include "project/project_link.h"
#include "project/project_manager.h"
#include "project/projects.h"

namespace marlune::project {

namespace {

std::vector<forms::ToolButton> ProgramButtons()
{
    return {{"ProgRun", "Run Program", "ProgRun", true},
            {"ProgramStop", "Stop Program", "ProgramStop", true},
            {"Abort", "Abort All", "Abort", true}};
}

} // namespace

FrmProjectProgram::FrmProjectProgram(Projects& projects)
    : forms::Form("frmProjectProgram", "Marlune Motion Program 1"), programText(add<forms::TextBox>("programText")),
      ProgramNumber(add<forms::TextBox>("ProgramNumber", "Program 1")),
      Toolbar1(add<forms::ToolBar>("Toolbar1", ProgramButtons())), Timer1(add<forms::Timer>("Timer1", 1)),
      projects_(projects)
{
    programText.multiLine = true;
    programText.fontName = "Courier";
    ProgramNumber.locked = true;
    programText.onChange = [this] { projects_.markChanged(); };
    forms::ReplaceTypedTabs(programText, Timer1, replaceTab);
    Toolbar1.onButtonClick = [this](const std::string& key) { toolbarClick(key); };
}

void FrmProjectProgram::formLoad() { replaceTab = 0; }

bool FrmProjectProgram::formUnload()
{
    ProjectState& state = projects_.state;
    // The window's text goes back to the record, so that a later save or opening keeps the edits.
    state.section(myProgramNumber) = programText.text();
    state.programWindowMask = link::BitAnd(state.programWindowMask, 15 - myProgramBit);
    state.windowClosing = true;
    FrmProjectManager& manager = projects_.manager();
    manager.displayProg(myProgramNumber >= 1 && myProgramNumber <= 3 ? myProgramNumber : 4).setValue(0);
    manager.ArrangeFocus();
    forms::Platform& platform = forms::CurrentPlatform();
    platform.arrange(forms::Arrangement::TileVertical);
    platform.activate(manager);
    manager.selectFirstEnabled();
    return true;
}

void FrmProjectProgram::toolbarClick(const std::string& key)
{
    const std::string number = std::to_string(myProgramNumber);
    if (key == "ProgRun") {
        WithLinkForClick([&number] {
            std::string command = "RUN " + number + "\r";
            std::string reply;
            link::SendCommand(command, reply);
            if (!reply.empty())
                forms::MsgBox(reply);
        });
    } else if (key == "ProgramStop") {
        WithLinkForClick([&number] { SendUnread("QUIT " + number); });
    } else if (key == "Abort") {
        WithLinkForClick([] { SendUnread("ABORT"); });
    }
}

} // namespace marlune::project
