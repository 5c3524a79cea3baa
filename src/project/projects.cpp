#include "project/projects.h"

#include <optional>

#include "forms/files.h"
#include "forms/platform.h"
#include "link/bit_arithmetic.h"
#include "project/project_file.h"
#include "project/project_manager.h"
#include "project/project_program.h"

namespace marlune::project {

namespace {

constexpr const char* ProjectFilter = "Marlune Project Files (*.prj)|*.prj";
constexpr const char* OpenAlready = "Project Open Already!  Close current project before opening another.";
// A failure of an open or a save: its description followed by its source.
void ShowFailure(const std::string& description) { forms::MsgBox(description + forms::kErrorSource); }

bool HoldsStar(const std::string& name) { return name.find('*') != std::string::npos; }

} // namespace

std::int32_t ProgramBit(int n) { return link::ShiftLeft(1, n - 1); }

std::string FilePart(const std::string& fileName)
{
    const std::size_t separator = fileName.find_last_of("\\/");
    return separator == std::string::npos ? fileName : fileName.substr(separator + 1);
}

Projects::Projects(forms::Form& frame, transfer::Status& status) : frame_(frame), status_(status) {}

Projects::~Projects() = default;

FrmProjectManager& Projects::manager()
{
    if (!manager_)
        manager_ = std::make_unique<FrmProjectManager>(*this);
    return *manager_;
}

FrmProjectProgram* Projects::programWindow(int n) const { return programs_[static_cast<std::size_t>(n - 1)].get(); }

FrmProjectProgram& Projects::makeProgramWindow(int n)
{
    auto& slot = programs_[static_cast<std::size_t>(n - 1)];
    slot = std::make_unique<FrmProjectProgram>(*this);
    slot->load();
    return *slot;
}

bool Projects::programWindowOpen(int n) const { return link::BitAnd(state.programWindowMask, ProgramBit(n)) != 0; }

FrmProjectManager& Projects::showManager()
{
    FrmProjectManager& window = manager();
    window.load();
    window.setCaption("Marlune Project Manager");
    forms::CurrentPlatform().showModeless(window, &frame_);
    return window;
}

void Projects::NewProject()
{
    if (state.projectOpen) {
        forms::MsgBox(OpenAlready);
        return;
    }
    FrmProjectManager& window = showManager();
    window.DefinitionList.setText({});
    state.projectFile.clear();
    for (int n = 1; n <= ProgramCount; ++n)
        state.section(n).clear();
    state.projectOpen = true;
    state.projectChanged = false;
    showDocument();
    // No control button acts on anything until a window opens.
    for (forms::OptionButton* option : window.SelProg) {
        option->setEnabled(false);
        option->setValue(false);
    }
    window.SelProgAll.setEnabled(false);
    window.SelProgAll.setValue(false);
}

void Projects::OpenProject()
{
    if (state.projectOpen) {
        forms::MsgBox(OpenAlready);
        return;
    }
    const std::optional<std::string> fileName =
            forms::ChooseFile({"Open Marlune Project", ProjectFilter, "*.prj", false, false, ""});
    if (fileName && !fileName->empty())
        openProjectFile(*fileName);
}

void Projects::OpenRecent(std::size_t index)
{
    if (state.projectOpen) {
        forms::MsgBox(OpenAlready);
        return;
    }
    if (index >= recent.names().size())
        return;
    const std::string fileName = recent.names()[index];
    if (!forms::FileExists(fileName)) {
        forms::MsgBox("File " + fileName + " does not exist!");
        recent.forget(fileName);
        return;
    }
    openProjectFile(fileName);
}

void Projects::openProjectFile(const std::string& fileName)
{
    std::int32_t display = 0;
    std::int32_t control = 0;
    if (!HoldsStar(fileName)) {
        if (!forms::FileExists(fileName)) {
            forms::MsgBox("File " + fileName + " does not exist!");
            return;
        }
        // Read before anything changes: a file that cannot be read opens nothing.
        ProjectState read;
        if (const std::string failure = ReadProjectFile(fileName, read, display, control); !failure.empty()) {
            ShowFailure(failure);
            return;
        }
        state.projectFile = fileName;
        state.sectionText = std::move(read.sectionText);
        recent.remember(fileName);
    }
    FrmProjectManager& window = showManager();
    window.DefinitionList.setText(state.section(DefinitionSection));
    window.ProjName.setText(FilePart(fileName));
    state.projectOpen = true;
    for (int n = 1; n <= ProgramCount; ++n) {
        const bool shown = link::BitAnd(display, ProgramBit(n)) != 0;
        if (shown)
            window.displayProg(n).setValue(1);
        window.selProg(n).setEnabled(shown);
    }
    for (int n = 1; n <= ProgramCount; ++n) {
        if (link::BitAnd(control, ProgramBit(n)) != 0)
            window.selProg(n).setValue(true);
    }
    if (link::BitAnd(control, AllProgramsBit) != 0)
        window.SelProgAll.setValue(true);
    state.projectChanged = false;
    showDocument();
}

void Projects::SaveProject()
{
    if (!state.projectOpen) {
        forms::MsgBox("No Project to save!");
        return;
    }
    if (!forms::CurrentPlatform().activeChild())
        return;
    if (state.projectFile.empty()) {
        forms::MsgBox("No Project Name! Use Save As to save project.");
        return;
    }
    SaveProjectToFile(state.projectFile);
}

void Projects::SaveAsproject()
{
    if (!forms::CurrentPlatform().activeChild())
        return;
    if (!state.projectOpen) {
        forms::MsgBox("No Project to save!");
        return;
    }
    const std::optional<std::string> fileName =
            forms::ChooseFile({"Save Marlune Project As", ProjectFilter, "", true, false, "prj"});
    if (!fileName)
        return;
    if (fileName->empty()) {
        forms::MsgBox("No Project Name!");
        return;
    }
    SaveProjectToFile(*fileName);
}

void Projects::SaveProjectToFile(const std::string& fileName)
{
    if (fileName.empty() || HoldsStar(fileName))
        return;
    FrmProjectManager& window = manager();
    SectionTexts sections;
    sections[SectionIndex(DefinitionSection)] = window.DefinitionList.text();
    for (int n = 1; n <= ProgramCount; ++n)
        sections[SectionIndex(n)] = programWindowOpen(n) ? programWindow(n)->programText.text() : state.section(n);
    const std::string failure =
            WriteProjectFile(fileName, sections, window.displaySelection(), window.controlSelection());
    if (!failure.empty()) {
        ShowFailure("The project file " + fileName + " cannot be written: " + failure + ".");
        return;
    }
    forms::MsgBox("Save Done!");
    window.ProjName.setText(FilePart(fileName));
    state.projectFile = fileName;
    state.projectChanged = false;
    recent.remember(fileName);
    showDocument();
}

void Projects::CloseProject()
{
    if (!state.projectOpen) {
        forms::MsgBox("Project not open!");
        state.projectChanged = false;
        return;
    }
    if (!manager().unload())
        return;
    state.programWindowMask = 0;
    state.projectOpen = false;
    state.projectFile.clear();
    state.projectChanged = false;
    showDocument();
}

void Projects::UploadProject()
{
    if (state.projectOpen) {
        forms::MsgBox(OpenAlready);
        return;
    }
    NewProject();
    FrmProjectManager& window = manager();
    state.silentUpload = true;
    window.SelProgAll.setValue(true);
    window.DoUploadPrograms();
    state.silentUpload = false;
}

void Projects::Print()
{
    if (!state.projectOpen) {
        forms::MsgBox("Project not open to print!");
        return;
    }
    forms::Platform& platform = forms::CurrentPlatform();
    if (!platform.activeChild() || !forms::ChoosePrinter("Print Marlune Program"))
        return;
    // A job that fails does not stop the others.
    for (int n = 1; n <= ProgramCount; ++n) {
        if (programWindowOpen(n)) {
            FrmProjectProgram& window = *programWindow(n);
            platform.activate(window);
            platform.printText(window.caption(), window.programText.text());
        }
    }
    FrmProjectManager& window = manager();
    platform.activate(window);
    platform.printText(window.Label1.caption(), window.DefinitionList.text());
}

void Projects::TileVertical()
{
    if (state.programWindowMask != 0)
        tile(forms::Arrangement::TileVertical);
}

void Projects::TileHorizontal()
{
    if (state.projectOpen)
        tile(forms::Arrangement::TileHorizontal);
}

void Projects::tile(forms::Arrangement arrangement)
{
    FrmProjectManager& window = manager();
    window.ArrangeFocus();
    forms::Platform& platform = forms::CurrentPlatform();
    platform.arrange(arrangement);
    platform.activate(window);
}

void Projects::markChanged()
{
    state.projectChanged = true;
    showDocument();
}

void Projects::showDocument()
{
    if (!state.projectOpen)
        frame_.setDocument({}, false);
    else
        frame_.setDocument(state.projectFile.empty() ? "Untitled" : FilePart(state.projectFile), state.projectChanged);
}

bool Projects::closeForShutDown() { return !state.projectOpen || manager().unload(); }

} // namespace marlune::project
