#pragma once

#include <string_view>

#include "forms/form.h"

namespace marlune::shell {

class Program;

// Keys of the frame's per-user settings: written at shut-down, read nowhere.
inline constexpr const char* kSettingsSection = "Settings";
inline constexpr int kTwipsPerPixel = 15;

// The help viewer's commands: the contents, and the search by keyword.
inline constexpr int kHelpContents = 3;
inline constexpr int kHelpSearch = 261;

// The main frame: the menu tree and tool bar, which are the program's only way into its
// functions, and the multiple-document frame that holds the project windows.
class FrmMain final : public forms::Form {
public:
    explicit FrmMain(Program& program);

    forms::ToolBar& tbToolBar;
    // The status bar's panel that names the link in use, so that the simulated controller is
    // never taken for a machine.
    forms::Label& sbLink;

    void showLinkInUse();

    forms::MenuItem* menuItem(std::string_view name) const { return find<forms::MenuItem>(name); }

protected:
    void formLoad() override;
    bool formUnload() override;
    void formResize() override;

private:
    enum class EditCommand { Copy, Cut, Paste };

    void buildMenus();
    void editProgramText(EditCommand command);
    void connectMenus();
    // The File menu lists the recent projects above Exit, and hides the places it does not need.
    void showRecentProjects();
    void toolButtonClicked(const std::string& key);
    void runMenu(std::string_view name);
    void showHelp(int command);

    Program& program_;
};

} // namespace marlune::shell
