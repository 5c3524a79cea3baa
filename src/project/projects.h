#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "forms/platform.h"
#include "project/project_state.h"
#include "project/recent_projects.h"

namespace marlune::forms {
class Form;
}
namespace marlune::transfer {
class Status;
}

namespace marlune::project {

class FrmProjectManager;
class FrmProjectProgram;

inline constexpr int ProgramCount = 4;
// The bit of SelProgAll in the control selection.
inline constexpr std::int32_t AllProgramsBit = 16;

// The bit of program n (1 to 4) in programWindowMask and in both selections: 1, 2, 4, 8.
std::int32_t ProgramBit(int n);

// What stands behind the last path separator of a name; the whole name without one.
std::string FilePart(const std::string& fileName);

// The one project of the run: its record, its windows, and the frame's project commands.
class Projects final {
public:
    Projects(forms::Form& frame, transfer::Status& status);
    ~Projects();
    Projects(const Projects&) = delete;
    Projects& operator=(const Projects&) = delete;

    ProjectState state;
    RecentProjects recent;

    forms::Form& frame() const { return frame_; }
    // The transfer dialog through which programs go to and come from the controller.
    transfer::Status& status() const { return status_; }
    // Made at first use and loaded anew for each project.
    FrmProjectManager& manager();
    FrmProjectManager* madeManager() const { return manager_.get(); }
    // The window of program n made last, loaded or not; nothing before the first.
    FrmProjectProgram* programWindow(int n) const;
    // A fresh, loaded window for program n: nothing of an earlier window survives.
    FrmProjectProgram& makeProgramWindow(int n);
    bool programWindowOpen(int n) const;

    void NewProject();
    void OpenProject();
    // Opens the project at `index` of the recent list as OpenProject opens a chosen file; one that
    // is gone leaves the list.
    void OpenRecent(std::size_t index);
    void SaveProject();
    void SaveAsproject();
    void SaveProjectToFile(const std::string& fileName);
    void CloseProject();
    // A new project made of what the controller holds: its programs, program set and name.
    void UploadProject();
    // The open programs by number, then the definition list, each as a print job of its own under
    // its window's caption; each window takes the focus as its text goes to the printer.
    void Print();

    // The frame's tilings: the focus goes to the manager, to the displayed programs from 4 down to
    // 1, the children are laid out, and the manager takes the focus again. Vertical tiling (also
    // run at every resize of the frame) does nothing while no program is displayed; horizontal
    // tiling lays out a manager that stands alone, and does nothing without a project.
    void TileVertical();
    void TileHorizontal();

    // Every change of the project goes through here, so that the frame can show it.
    void markChanged();
    // The frame's title names the open project and whether it has changed since it was saved.
    void showDocument();

    // The frame's shut-down asks the manager's question: true when no project stands or it closed.
    bool closeForShutDown();

private:
    FrmProjectManager& showManager();
    void openProjectFile(const std::string& fileName);
    void tile(forms::Arrangement arrangement);

    forms::Form& frame_;
    transfer::Status& status_;
    std::unique_ptr<FrmProjectManager> manager_;
    std::array<std::unique_ptr<FrmProjectProgram>, ProgramCount> programs_;
};

} // namespace marlune::project
