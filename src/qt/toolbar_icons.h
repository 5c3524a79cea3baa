#pragma once

#include <QIcon>
#include <QString>

namespace marlune::qt {

// The picture of a tool button, by the button's image name, drawn here at run time: no image
// files ship, and no icon theme is searched at start, which would cost more than the frame.
QIcon ToolbarIcon(const QString& image);

// The picture of the button that shows the buttons a tool bar has no room for.
QIcon ToolbarExtensionIcon(Qt::Orientation orientation);

} // namespace marlune::qt
