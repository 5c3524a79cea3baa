#pragma once

#include <map>
#include <string>
#include <vector>

#include "forms/control.h"

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;

namespace marlune::qt {

// A form's menu tree as Qt menus: every entry is one QAction named after its control. A top
// entry, or an entry that others name as their parent, is a menu (its QAction is the menu's
// own); "-" is a separator; the rest are commands with their shortcuts.
struct BuiltMenus {
    std::map<std::string, QAction*> actions;
    std::map<std::string, QMenu*> menus;
};

BuiltMenus BuildMenus(const std::vector<forms::MenuItem*>& items, QMenuBar& bar);

// The tool bar's buttons in order, separators where a place has no key. Each button shows
// only its picture; its tool tip is the model's, and its key rides along as the action's data.
std::vector<QAction*> BuildToolBar(const forms::ToolBar& model, QToolBar& bar);

// A caption without its access-key markers ("&File" is "File", "&&" is "&").
std::string PlainCaption(const std::string& caption);

} // namespace marlune::qt
