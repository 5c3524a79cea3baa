#pragma once

#include <QProxyStyle>

namespace marlune::qt {

// The desktop's style with the program's own drawn pictures where the style would read picture
// files at start: reading the first picture file loads every image format plug-in, which costs
// the start of the frame more than drawing the picture does.
class DeskStyle final : public QProxyStyle {
public:
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
};

} // namespace marlune::qt
