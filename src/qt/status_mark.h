#pragma once

#include <QObject>
#include <QPointer>

class QLabel;
class QWidget;

namespace marlune::panel {
class MainControl;
}

namespace marlune::qt {

// The motion panel's mark of values that are not live: while no status reply has been read, or
// once polling stopped for a lost link, the status area is greyed and a line beside Reconnect
// says why. Only the view changes; the panel's values and texts stay as the panel set them.
class StatusMark final : public QObject {
    Q_OBJECT

public:
    StatusMark(panel::MainControl& panel, QWidget& window);

    // What the mark says now; empty while the values are live.
    QString text() const;

private:
    void show();

    panel::MainControl& panel_;
    QWidget& window_;
    QPointer<QLabel> label_;
};

} // namespace marlune::qt
