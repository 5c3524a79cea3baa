#include "shell/frm_main.h"

#include <string>

#include "config/com_setup.h"
#include "config/setup.h"
#include "config/setup_encoder_control.h"
#include "config/setup_joystick.h"
#include "forms/platform.h"
#include "link/controller_link.h"
#include "link/link_settings.h"
#include "panel/main_control.h"
#include "project/project_program.h"
#include "project/projects.h"
#include "shell/frm_about.h"
#include "shell/menu_table.h"
#include "shell/program.h"
#include "tools/communication_log.h"
#include "tools/terminal.h"
#include "transfer/memory_operations.h"

namespace marlune::shell {

namespace {

std::vector<forms::ToolButton> ToolButtons()
{
    std::vector<forms::ToolButton> buttons;
    for (const ToolPlace& place : kToolBarTable)
        buttons.push_back({std::string(place.key), std::string(place.toolTip), std::string(place.key), true});
    return buttons;
}

std::string RecentItem(std::size_t index) { return "mnuFileRecent" + std::to_string(index + 1); }

// A menu caption with the place's number as its access key; an "&" of the name stays a character.
std::string RecentCaption(std::size_t index, const std::string& name)
{
    std::string caption = "&" + std::to_string(index + 1) + " ";
    for (const char c : name)
        caption += c == '&' ? "&&" : std::string(1, c);
    return caption;
}

} // namespace

FrmMain::FrmMain(Program& program)
    : forms::Form("frmMain", "MarluneDesk"), tbToolBar(add<forms::ToolBar>("tbToolBar", ToolButtons())),
      sbLink(add<forms::Label>("sbLink", "")), program_(program)
{
    buildMenus();
    connectMenus();
    tbToolBar.onButtonClick = [this](const std::string& key) { toolButtonClicked(key); };
}

void FrmMain::buildMenus()
{
    for (const MenuEntry& entry : kMenuTable)
        add<forms::MenuItem>(std::string(entry.name), std::string(entry.parent), std::string(entry.caption),
                             std::string(entry.shortcut));
}

void FrmMain::connectMenus()
{
    menuItem("mnuFileExit")->onClick = [this] { unload(); };
    menuItem("NewProject")->onClick = [this] { program_.projects().NewProject(); };
    menuItem("OpenProject")->onClick = [this] { program_.projects().OpenProject(); };
    menuItem("SaveProject")->onClick = [this] { program_.projects().SaveProject(); };
    menuItem("SaveAsproject")->onClick = [this] { program_.projects().SaveAsproject(); };
    menuItem("CloseProject")->onClick = [this] { program_.projects().CloseProject(); };
    menuItem("UploadProject")->onClick = [this] { program_.projects().UploadProject(); };
    menuItem("mnuFilePrint")->onClick = [this] { program_.projects().Print(); };
    for (std::size_t i = 0; i < project::RecentProjects::Count; ++i)
        menuItem(RecentItem(i))->onClick = [this, i] { program_.projects().OpenRecent(i); };
    menuItem("mnuToolsmnuControl")->onClick = [this] { forms::ShowModal(program_.mainControl(), this); };
    menuItem("mnuToolsTerminal")->onClick = [this] { forms::ShowModal(program_.terminal(), this); };
    menuItem("Store")->onClick = [] { transfer::Store(); };
    menuItem("Load")->onClick = [] { transfer::Load(); };
    menuItem("StoreToFile")->onClick = [this] { transfer::StoreToFile(program_.status()); };
    menuItem("LoadFromFile")->onClick = [this] { transfer::LoadFromFile(program_.status()); };
    menuItem("mnuToolsCompareMemory")->onClick = [this] {
        transfer::CompareMemoryWithFile(program_.status(), program_.compareMemory());
    };
    menuItem("mnuToolsCommunicationLog")->onClick = [this] {
        // A window of its own beside the frame, so that it can watch a modal panel's traffic.
        tools::CommunicationLog& log = program_.communicationLog();
        if (log.loaded() || log.load())
            forms::CurrentPlatform().showOwned(log, *this);
    };
    menuItem("mnuSetup")->onClick = [this] { forms::ShowModal(program_.setup(), this); };
    menuItem("mnuSetupJoystick")->onClick = [this] { forms::ShowModal(program_.setupJoystick(), this); };
    menuItem("mnuSetupEncoderControl")->onClick = [this] { forms::ShowModal(program_.setupEncoderControl(), this); };
    menuItem("mnuSetupCommunication")->onClick = [this] {
        forms::ShowModal(program_.comSetup(), this);
        showLinkInUse();
    };
    menuItem("mnuHelpContents")->onClick = [this] { showHelp(kHelpContents); };
    menuItem("mnuHelpSearchForHelpOn")->onClick = [this] { showHelp(kHelpSearch); };
    menuItem("mnuHelpAbout")->onClick = [this] { forms::ShowModal(program_.about(), this); };
    menuItem("mnuEditCopy")->onClick = [this] { editProgramText(EditCommand::Copy); };
    menuItem("mnuEditCut")->onClick = [this] { editProgramText(EditCommand::Cut); };
    menuItem("mnuEditPaste")->onClick = [this] { editProgramText(EditCommand::Paste); };
    menuItem("mnuWindowTileHorizontal")->onClick = [this] { program_.projects().TileHorizontal(); };
    menuItem("mnuWindowTileVertical")->onClick = [this] { program_.projects().TileVertical(); };
    menuItem("mnuWindowCascade")->onClick = [] { forms::CurrentPlatform().arrange(forms::Arrangement::Cascade); };
    menuItem("mnuWindowArrangeIcons")->onClick = [] {
        forms::CurrentPlatform().arrange(forms::Arrangement::ArrangeIcons);
    };
}

// The edit commands act on the program text of the active child when it is a program window;
// anywhere else, the project manager included, they do nothing and say nothing.
void FrmMain::editProgramText(EditCommand command)
{
    forms::Platform& platform = forms::CurrentPlatform();
    auto* window = dynamic_cast<project::FrmProjectProgram*>(platform.activeChild());
    if (!window)
        return;
    forms::TextBox& text = window->programText;
    if (command == EditCommand::Paste) {
        if (const std::optional<std::string> pasted = platform.clipboardText())
            text.setSelText(*pasted);
        return;
    }
    platform.setClipboardText(text.selText());
    if (command == EditCommand::Cut)
        text.setSelText({});
}

void FrmMain::showLinkInUse()
{
    const link::ControllerLink& link = link::Link();
    sbLink.setCaption(link::DescribeLinkInUse(link.linkKind, link.ipAddress, link.comPort, program_.makersLibrary));
}

void FrmMain::formLoad()
{
    showLinkInUse();
    project::RecentProjects& recent = program_.projects().recent;
    recent.onChange = [this] { showRecentProjects(); };
    recent.read();
}

void FrmMain::showRecentProjects()
{
    const std::vector<std::string>& names = program_.projects().recent.names();
    for (std::size_t i = 0; i < project::RecentProjects::Count; ++i) {
        forms::MenuItem& item = *menuItem(RecentItem(i));
        item.setVisible(i < names.size());
        if (i < names.size())
            item.setCaption(RecentCaption(i, names[i]));
    }
    menuItem("mnuFileBar5")->setVisible(!names.empty());
}

void FrmMain::showHelp(int command)
{
    if (program_.helpFile.empty()) {
        forms::MsgBox("Unable to display Help Contents. There is no Help associated with this project.",
                      forms::MessageButtons::OK, forms::MessageIcon::Information, caption());
        return;
    }
    if (const auto error = forms::CurrentPlatform().showHelp(program_.helpFile, command))
        forms::MsgBox(*error);
}

void FrmMain::formResize() { program_.projects().TileVertical(); }

void FrmMain::toolButtonClicked(const std::string& key)
{
    for (const ToolPlace& place : kToolBarTable) {
        if (!place.key.empty() && place.key == key) {
            runMenu(place.menu);
            return;
        }
    }
}

void FrmMain::runMenu(std::string_view name)
{
    if (forms::MenuItem* item = menuItem(name); item && item->onClick)
        item->onClick();
}

bool FrmMain::formUnload()
{
    // The close box and mnuFileExit both come here: an open project asks its question first.
    if (!program_.projects().closeForShutDown())
        return false;
    if (windowState != forms::WindowState::Minimized) {
        forms::Platform& platform = forms::CurrentPlatform();
        const auto twips = [](int pixels) { return std::to_string(pixels * kTwipsPerPixel); };
        platform.saveSetting(forms::kApplicationTitle, kSettingsSection, "MainLeft", twips(left));
        platform.saveSetting(forms::kApplicationTitle, kSettingsSection, "MainTop", twips(top));
        platform.saveSetting(forms::kApplicationTitle, kSettingsSection, "MainWidth", twips(width));
        platform.saveSetting(forms::kApplicationTitle, kSettingsSection, "MainHeight", twips(height));
    }
    return true;
}

} // namespace marlune::shell
