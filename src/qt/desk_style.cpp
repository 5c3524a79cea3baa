#include "qt/desk_style.h"

#include "qt/toolbar_icons.h"

namespace marlune::qt {

QIcon DeskStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption* option, const QWidget* widget) const
{
    // Every tool bar asks for its extension button's picture when it is made.
    switch (standardIcon) {
    case SP_ToolBarHorizontalExtensionButton: return ToolbarExtensionIcon(Qt::Horizontal);
    case SP_ToolBarVerticalExtensionButton: return ToolbarExtensionIcon(Qt::Vertical);
    default: return QProxyStyle::standardIcon(standardIcon, option, widget);
    }
}

} // namespace marlune::qt
