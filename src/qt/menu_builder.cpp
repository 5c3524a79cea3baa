#include "qt/menu_builder.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <set>

#include "qt/shown_text.h"
#include "qt/toolbar_icons.h"

namespace marlune::qt {

BuiltMenus BuildMenus(const std::vector<forms::MenuItem*>& items, QMenuBar& bar)
{
    std::set<std::string> parents;
    for (const forms::MenuItem* item : items)
        parents.insert(item->parent());

    BuiltMenus built;
    for (forms::MenuItem* item : items) {
        const QString name = QString::fromStdString(item->name());
        QMenu* parentMenu = nullptr;
        if (!item->parent().empty()) {
            const auto it = built.menus.find(item->parent());
            // An entry whose parent came later or not at all has no place in the tree.
            if (it == built.menus.end())
                continue;
            parentMenu = it->second;
        }
        QAction* action = nullptr;
        if (!parentMenu || parents.count(item->name())) {
            QMenu* menu = parentMenu ? parentMenu->addMenu(ShownText(item->caption()))
                                     : bar.addMenu(ShownText(item->caption()));
            menu->setObjectName(name);
            built.menus[item->name()] = menu;
            action = menu->menuAction();
        } else if (item->isSeparator()) {
            action = parentMenu->addSeparator();
        } else {
            action = parentMenu->addAction(ShownText(item->caption()));
            if (!item->shortcut().empty())
                action->setShortcut(QKeySequence::fromString(ShownText(item->shortcut()), QKeySequence::PortableText));
        }
        action->setObjectName(name);
        built.actions[item->name()] = action;
    }
    return built;
}

std::vector<QAction*> BuildToolBar(const forms::ToolBar& model, QToolBar& bar)
{
    bar.setToolButtonStyle(Qt::ToolButtonIconOnly);
    std::vector<QAction*> actions;
    for (const forms::ToolButton& button : model.buttons()) {
        if (button.key.empty()) {
            actions.push_back(bar.addSeparator());
            continue;
        }
        const QString key = ShownText(button.key);
        // The text is what a screen reader and the overflow menu say; the button shows none.
        QAction* action = bar.addAction(ToolbarIcon(ShownText(button.image)), ShownText(button.toolTip));
        action->setObjectName(key);
        action->setToolTip(ShownText(button.toolTip));
        action->setData(key);
        action->setEnabled(button.enabled);
        actions.push_back(action);
    }
    return actions;
}

std::string PlainCaption(const std::string& caption)
{
    std::string plain;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == '&' && i + 1 < caption.size())
            ++i;
        else if (caption[i] == '&')
            continue;
        plain.push_back(caption[i]);
    }
    return plain;
}

} // namespace marlune::qt
