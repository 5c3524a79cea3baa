#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

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
    forms::Button& Verify;

    forms::CheckBox& displayProg(int n) const { return *DisplayProg[static_cast<std::size_t>(n - 1)]; }
    forms::OptionButton& selProg(int n) const { return *SelProg[static_cast<std::size_t>(n - 1)]; }

    // Focus to the manager, then to the open programs 4 to 1, so that a tiling finds program 1
    // on top and the manager behind the programs.
    void ArrangeFocus();
    // Sets the first enabled of SelProg1 to SelProg4, else SelProgAll.
    void selectFirstEnabled();

    std::int32_t displaySelection() const;
    std::int32_t controlSelection() const;

    // Runs exactly what a click on UploadPrograms runs; the frame's UploadProject reaches it so.
    void DoUploadPrograms();

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

    // The project download, its check and the upload (project_transfer.cpp).
    void downloadPrograms();
    void verifyPrograms();
    // One program through the transfer dialog; false when the dialog did not finish it.
    bool transferProgram(int n, const std::string& caption, std::int16_t operation, const std::string& text);
    bool uploadSelected(int n);
    bool uploadAll();
    // Gives the window of program n its number, as opening it does.
    void numberWindow(int n);
    void fillWindow(int n, const std::string& text);

    Projects& projects_;
    // What the last finished download prepared, by program; Verify compares with it.
    std::array<std::optional<std::string>, 4> downloaded_;
};

} // namespace marlune::project
