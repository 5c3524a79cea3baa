#pragma once

#include <QIcon>
#include <QString>

namespace marlune::qt {

// The picture of a tool button, by the button's image name: the desktop's icon theme where it
// has one, else a picture drawn here at run time, so that no image files ship.
QIcon ToolbarIcon(const QString& image);

// The theme name looked for first ("document-open"); empty for an image it does not know.
QString ThemeIconName(const QString& image);

} // namespace marlune::qt
