#pragma once

#include <array>
#include <string_view>

namespace marlune::shell {

// One entry of the frame's menu tree, in order. A top menu has no parent; "-" is a separator.
// The Window menu also lists the open child windows; the platform adds them.
struct MenuEntry {
    std::string_view name;
    std::string_view parent;
    std::string_view caption;
    std::string_view shortcut;
};

// One place of the frame's tool bar; a separator has no key. `menu` names the menu entry whose
// operation the button runs.
struct ToolPlace {
    std::string_view key;
    std::string_view toolTip;
    std::string_view menu;
};

// clang-format off
inline constexpr std::array<MenuEntry, 48> kMenuTable = {{
    {"mnuFile", "", "&File", ""},
    {"UploadProject", "mnuFile", "Upload Project", ""},
    {"NewProject", "mnuFile", "New Project", ""},
    {"OpenProject", "mnuFile", "Open Project...", ""},
    {"CloseProject", "mnuFile", "Close Project", ""},
    {"mnuFileBar1", "mnuFile", "-", ""},
    {"SaveProject", "mnuFile", "Save Project", ""},
    {"SaveAsproject", "mnuFile", "Save As Project...", ""},
    {"mnuFileBar4", "mnuFile", "-", ""},
    {"mnuFilePrint", "mnuFile", "&Print...", ""},
    {"mnuFileBar2", "mnuFile", "-", ""},
    {"mnuFileRecent1", "mnuFile", "", ""},
    {"mnuFileRecent2", "mnuFile", "", ""},
    {"mnuFileRecent3", "mnuFile", "", ""},
    {"mnuFileRecent4", "mnuFile", "", ""},
    {"mnuFileBar5", "mnuFile", "-", ""},
    {"mnuFileExit", "mnuFile", "E&xit", ""},
    {"mnuEdit", "", "&Edit", ""},
    {"mnuEditCut", "mnuEdit", "Cu&t", "Ctrl+X"},
    {"mnuEditCopy", "mnuEdit", "&Copy", "Ctrl+C"},
    {"mnuEditPaste", "mnuEdit", "&Paste", "Ctrl+V"},
    {"mnuTools", "", "&Tools", ""},
    {"mnuToolsmnuControl", "mnuTools", "Control", ""},
    {"mnuToolsTerminal", "mnuTools", "Terminal", ""},
    {"mnuSetup", "mnuTools", "Setup", ""},
    {"mnuSetupJoystick", "mnuTools", "Setup Joystick", ""},
    {"mnuSetupEncoderControl", "mnuTools", "Setup Encoder Control", ""},
    {"ToolSeparate", "mnuTools", "-", ""},
    {"mnuSetupCommunication", "mnuTools", "Setup Communication", ""},
    {"ToolSeparateA", "mnuTools", "-", ""},
    {"Store", "mnuTools", "Store from Memory to EEPROM", ""},
    {"Load", "mnuTools", "Load from EEPROM to Memory", ""},
    {"ToolSeparate1", "mnuTools", "-", ""},
    {"StoreToFile", "mnuTools", "Store from Memory to File", ""},
    {"LoadFromFile", "mnuTools", "Load from File to Memory", ""},
    {"mnuToolsCompareMemory", "mnuTools", "Compare Memory with File...", ""},
    {"ToolSeparateLog", "mnuTools", "-", ""},
    {"mnuToolsCommunicationLog", "mnuTools", "Communication Log", ""},
    {"mnuWindow", "", "&Window", ""},
    {"mnuWindowCascade", "mnuWindow", "&Cascade", ""},
    {"mnuWindowTileHorizontal", "mnuWindow", "Tile &Horizontal", ""},
    {"mnuWindowTileVertical", "mnuWindow", "Tile &Vertical", ""},
    {"mnuWindowArrangeIcons", "mnuWindow", "&Arrange Icons", ""},
    {"mnuHelp", "", "&Help", ""},
    {"mnuHelpContents", "mnuHelp", "&Contents", ""},
    {"mnuHelpSearchForHelpOn", "mnuHelp", "&Search For Help On...", ""},
    {"mnuHelpBar0", "mnuHelp", "-", ""},
    {"mnuHelpAbout", "mnuHelp", "&About ", ""},
}};

inline constexpr std::array<ToolPlace, 22> kToolBarTable = {{
    {"Upload", "Upload Project", "UploadProject"},
    {"New", "New Project", "NewProject"},
    {"Open", "Open Project", "OpenProject"},
    {"Save", "Save Project", "SaveProject"},
    {"", "", ""},
    {"Print", "Print", "mnuFilePrint"},
    {"", "", ""},
    {"Cut", "Cut", "mnuEditCut"},
    {"Copy", "Copy", "mnuEditCopy"},
    {"Paste", "Paste", "mnuEditPaste"},
    {"", "", ""},
    {"control", "Control", "mnuToolsmnuControl"},
    {"terminal", "Terminal", "mnuToolsTerminal"},
    {"", "", ""},
    {"setup", "Setup", "mnuSetup"},
    {"setupjoy", "Setup Joystick", "mnuSetupJoystick"},
    {"setupenc", "Setup Encoder", "mnuSetupEncoderControl"},
    {"", "", ""},
    {"Tile", "Automatic Tile", "mnuWindowTileVertical"},
    {"", "", ""},
    {"", "", ""},
    {"Help", "Language Help", "mnuHelpContents"},
}};
// clang-format on

} // namespace marlune::shell
