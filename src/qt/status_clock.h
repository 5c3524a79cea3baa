#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

class QLabel;
class QStatusBar;

namespace marlune::qt {

// The frame's status bar panels with the date and the time. They show themselves: nothing in
// the program writes to them. The panels are repainted only when their text changes.
class StatusClock final : public QObject {
    Q_OBJECT

public:
    explicit StatusClock(QStatusBar& bar);

    // Sets the panels for this moment; true when a text changed.
    bool show(const QDateTime& now);

    const QLabel& datePanel() const { return *date_; }
    const QLabel& timePanel() const { return *time_; }

private:
    QLabel* date_;
    QLabel* time_;
    QTimer timer_;
};

} // namespace marlune::qt
