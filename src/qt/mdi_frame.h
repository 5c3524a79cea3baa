#pragma once

#include <QMainWindow>
#include <QPointer>

#include <functional>

#include "forms/platform.h"

class QMdiArea;
class QMdiSubWindow;
class QMenu;

namespace marlune::qt {

class StatusClock;

// The multiple-document frame: a main window whose central widget is the area of the child
// windows, with the four arrangements, the list of children in the Window menu, and the date
// and time in the status bar. Menus and tool bar come from the frame's form through the binder.
class MdiFrame final : public QMainWindow {
    Q_OBJECT

public:
    explicit MdiFrame(QWidget* parent = nullptr);

    // After the frame's layout was set up: takes its child area (or makes one) and its status bar.
    void attachLayout();

    QMdiArea& area() const { return *area_; }
    StatusClock* clock() const { return clock_; }

    void arrange(forms::Arrangement arrangement);

    // The menu that lists the open children below its own entries.
    void setWindowMenu(QMenu* menu);

    // Called for the close box instead of closing.
    std::function<void()> closeRequested;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void listChildren();
    // Children in the order a tiling lays them out: the topmost first.
    QList<QMdiSubWindow*> topmostFirst() const;

    QMdiArea* area_ = nullptr;
    StatusClock* clock_ = nullptr;
    QPointer<QMenu> windowMenu_;
    QList<QAction*> childActions_;
};

} // namespace marlune::qt
