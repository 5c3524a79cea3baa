#pragma once

#include <array>
#include <cstdint>

#include "forms/form.h"

namespace marlune::project {

class Projects;

// The window of the open project: its name, the definition list, a box per program that opens
// and closes the program's window, the selection the control buttons act on, and those buttons.
class FrmProjectManager final : public forms::Form {
public:
    explicit FrmProjectManager(Projects& projects);

    forms::TextBox& ProjName;
    forms::Label& Label1;
    forms::TextBox& DefinitionList;
    forms::Frame& Frame1;
    std::array<forms::CheckBox*, 4> DisplayProg;
    forms::Frame& Frame2;
    std::array<forms::OptionButton*, 4> SelProg;
    forms::OptionButton& SelProgAll;
    forms::Button& DownloadPromgrams;
    forms::Button& UploadPrograms;
    forms::Button& RunProg;
    forms::Button& StopProg;
    forms::Button& Abort;

    forms::CheckBox& displayProg(int n) const { return *DisplayProg[static_cast<std::size_t>(n - 1)]; }
    forms::OptionButton& selProg(int n) const { return *SelProg[static_cast<std::size_t>(n - 1)]; }

    // Focus to the manager, then to the open programs 4 to 1, so that a tiling finds program 1
    // on top and the manager behind the programs.
    void ArrangeFocus();
    // Sets the first enabled of SelProg1 to SelProg4, else SelProgAll.
    void selectFirstEnabled();

    std::int32_t displaySelection() const;
    std::int32_t controlSelection() const;

protected:
    void formLoad() override;
    bool formUnload() override;

private:
    void displayProgClick(int n);
    void openProgram(int n);
    void closeProgram(int n);
    // The program windows mark the names that the definition list defines.
    void markDefinedNames();
    void closingOptionSteps(int n);
    // "RUN n" or "QUIT n" for every selected program whose window is open.
    void sendToSelected(const char* verb);

    Projects& projects_;
};

} // namespace marlune::project
