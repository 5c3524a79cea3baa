#include "project/project_manager.h"

#include <string>

#include "forms/platform.h"
#include "link/bit_arithmetic.h"
#include "project/definitions.h"
#include "project/project_link.h"
#include "project/project_program.h"
#include "project/projects.h"

namespace marlune::project {

namespace {

template <class Make>
auto ProgramFamily(Make make)
{
    std::array<decltype(make(1)), ProgramCount> family{};
    for (int n = 1; n <= ProgramCount; ++n)
        family[static_cast<std::size_t>(n - 1)] = make(n);
    return family;
}

} // namespace

FrmProjectManager::FrmProjectManager(Projects& projects)
    : forms::Form("frmProjectManager", "Marlune Project Manager"), ProjName(add<forms::TextBox>("ProjName")),
      Label1(add<forms::Label>("Label1", "Definition List:")), DefinitionList(add<forms::TextBox>("DefinitionList")),
      Frame1(add<forms::Frame>("Frame1", "Open Program")), DisplayProg(ProgramFamily([this](int n) {
          return &add<forms::CheckBox>("DisplayProg" + std::to_string(n), std::to_string(n));
      })),
      Frame2(add<forms::Frame>("Frame2", "Program Control")), SelProg(ProgramFamily([this](int n) {
          return &add<forms::OptionButton>("SelProg" + std::to_string(n), "SelProg", std::to_string(n), n == 1);
      })),
      SelProgAll(add<forms::OptionButton>("SelProgAll", "SelProg", "All")),
      DownloadPromgrams(add<forms::Button>("DownloadPromgrams", "Download Programs")),
      UploadPrograms(add<forms::Button>("UploadPrograms", "Upload Programs")),
      RunProg(add<forms::Button>("RunProg", "Run Program")), StopProg(add<forms::Button>("StopProg", "Stop Program")),
      Abort(add<forms::Button>("Abort", "Abort All")), Verify(add<forms::Button>("Verify", "Verify")),
      projects_(projects)
{
    DefinitionList.multiLine = true;
    DefinitionList.onChange = [this] {
        projects_.markChanged();
        markDefinedNames();
    };
    for (int n = 1; n <= ProgramCount; ++n)
        displayProg(n).onClick = [this, n] { displayProgClick(n); };
    RunProg.onClick = [this] { sendToSelected("RUN "); };
    StopProg.onClick = [this] { sendToSelected("QUIT "); };
    Abort.onClick = [] { WithLinkForClick([] { SendUnread("ABORT"); }); };
    DownloadPromgrams.onClick = [this] { downloadPrograms(); };
    UploadPrograms.onClick = [this] { DoUploadPrograms(); };
    Verify.onClick = [this] { verifyPrograms(); };
}

void FrmProjectManager::formLoad()
{
    projects_.state.programWindowMask = 0;
    // A new project has nothing on the controller to check yet.
    downloaded_ = {};
    Verify.setEnabled(false);
}

bool FrmProjectManager::formUnload()
{
    ProjectState& state = projects_.state;
    if (state.projectChanged
        && forms::MsgBox("Project Changed. Are you sure you want to close?", forms::MessageButtons::YesNo)
                   == forms::MessageAnswer::No)
        return false;
    for (int n = 1; n <= ProgramCount; ++n) {
        if (projects_.programWindowOpen(n))
            projects_.programWindow(n)->unload();
    }
    state.programWindowMask = 0;
    state.projectOpen = false;
    projects_.showDocument();
    return true;
}

void FrmProjectManager::displayProgClick(int n)
{
    ProjectState& state = projects_.state;
    projects_.markChanged();
    const bool ticked = displayProg(n).value() == 1;
    const bool open = projects_.programWindowOpen(n);
    if (ticked && !open)
        openProgram(n);
    else if (ticked)
        forms::MsgBox("Program " + std::to_string(n) + " open already!");
    else if (open)
        closeProgram(n);
    else if (state.windowClosing)
        closingOptionSteps(n);
    else
        forms::MsgBox("Program " + std::to_string(n) + " not open!");
}

void FrmProjectManager::openProgram(int n)
{
    ProjectState& state = projects_.state;
    FrmProjectProgram& window = projects_.makeProgramWindow(n);
    numberWindow(n);
    state.programWindowMask = link::BitOr(state.programWindowMask, ProgramBit(n));
    markDefinedNames();
    window.programText.setText(state.section(n));
    forms::Platform& platform = forms::CurrentPlatform();
    platform.showModeless(window, &projects_.frame());
    ArrangeFocus();
    platform.arrange(forms::Arrangement::TileVertical);
    platform.activate(window);
    selProg(n).setEnabled(true);
    selProg(n).setValue(true);
    SelProgAll.setEnabled(true);
}

void FrmProjectManager::numberWindow(int n)
{
    FrmProjectProgram& window = *projects_.programWindow(n);
    window.setCaption("Marlune Motion Program " + std::to_string(n));
    window.ProgramNumber.setText("Program " + std::to_string(n));
    window.myProgramBit = ProgramBit(n);
    window.myProgramNumber = static_cast<std::int16_t>(n);
}

void FrmProjectManager::markDefinedNames()
{
    const std::vector<std::string> names = DefinitionNames(DefinitionList.text());
    for (int n = 1; n <= ProgramCount; ++n) {
        if (projects_.programWindowOpen(n))
            projects_.programWindow(n)->programText.setMarkedWords(names);
    }
}

void FrmProjectManager::closeProgram(int n)
{
    ProjectState& state = projects_.state;
    projects_.programWindow(n)->unload();
    state.programWindowMask = link::BitAnd(state.programWindowMask, 15 - ProgramBit(n));
    ArrangeFocus();
    forms::Platform& platform = forms::CurrentPlatform();
    platform.arrange(forms::Arrangement::TileVertical);
    platform.activate(*this);
    closingOptionSteps(n);
}

void FrmProjectManager::closingOptionSteps(int n)
{
    selProg(n).setEnabled(false);
    selProg(n).setValue(false);
    selectFirstEnabled();
}

void FrmProjectManager::selectFirstEnabled()
{
    for (forms::OptionButton* option : SelProg) {
        if (option->enabled()) {
            option->setValue(true);
            return;
        }
    }
    SelProgAll.setValue(true);
}

void FrmProjectManager::ArrangeFocus()
{
    forms::Platform& platform = forms::CurrentPlatform();
    platform.activate(*this);
    for (int n = ProgramCount; n >= 1; --n) {
        if (projects_.programWindowOpen(n))
            platform.activate(*projects_.programWindow(n));
    }
}

std::int32_t FrmProjectManager::displaySelection() const
{
    std::int32_t selection = 0;
    for (int n = 1; n <= ProgramCount; ++n) {
        if (displayProg(n).value() == 1)
            selection = link::BitOr(selection, ProgramBit(n));
    }
    return selection;
}

std::int32_t FrmProjectManager::controlSelection() const
{
    std::int32_t selection = 0;
    for (int n = 1; n <= ProgramCount; ++n) {
        if (selProg(n).value())
            selection = link::BitOr(selection, ProgramBit(n));
    }
    return SelProgAll.value() ? link::BitOr(selection, AllProgramsBit) : selection;
}

void FrmProjectManager::sendToSelected(const char* verb)
{
    WithLinkForClick([this, verb] {
        for (int n = 1; n <= ProgramCount; ++n) {
            if ((selProg(n).value() || SelProgAll.value()) && selProg(n).enabled())
                SendUnread(verb + std::to_string(n));
        }
    });
}

} // namespace marlune::project
