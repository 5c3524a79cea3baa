#include "qt/mdi_frame.h"

#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStatusBar>

#include "qt/status_clock.h"
#include "qt/tilings.h"

namespace marlune::qt {

MdiFrame::MdiFrame(QWidget* parent) : QMainWindow(parent) {}

void MdiFrame::attachLayout()
{
    area_ = qobject_cast<QMdiArea*>(centralWidget());
    if (!area_) {
        area_ = new QMdiArea(this);
        area_->setObjectName(QStringLiteral("mdiArea"));
        setCentralWidget(area_);
    }
    // The link's panel, a child of the bar in the layout, takes the bar's free space on the left.
    if (auto* link = statusBar()->findChild<QLabel*>(QStringLiteral("sbLink")))
        statusBar()->addWidget(link, 1);
    clock_ = new StatusClock(*statusBar());
}

void MdiFrame::arrange(forms::Arrangement arrangement)
{
    if (!area_)
        return;
    QList<QMdiSubWindow*> open;
    QList<QMdiSubWindow*> minimised;
    for (QMdiSubWindow* child : topmostFirst()) {
        if (child->isHidden())
            continue;
        (child->isMinimized() ? minimised : open).append(child);
    }
    const QRect whole = area_->viewport()->rect();
    switch (arrangement) {
    case forms::Arrangement::Cascade: area_->cascadeSubWindows(); return;
    case forms::Arrangement::TileHorizontal:
    case forms::Arrangement::TileVertical: {
        // Minimised children keep their place at the bottom; the others share the rest.
        const auto tiles = arrangement == forms::Arrangement::TileHorizontal
                                   ? TileHorizontally(whole, static_cast<int>(open.size()))
                                   : TileVertically(whole, static_cast<int>(open.size()));
        for (qsizetype i = 0; i < open.size(); ++i) {
            if (open[i]->isMaximized())
                open[i]->showNormal();
            open[i]->setGeometry(tiles[static_cast<std::size_t>(i)]);
        }
        return;
    }
    case forms::Arrangement::ArrangeIcons: {
        if (minimised.isEmpty())
            return;
        const QSize icon = minimised.front()->size();
        const auto places = IconPositions(whole, icon, static_cast<int>(minimised.size()));
        for (qsizetype i = 0; i < minimised.size(); ++i)
            minimised[i]->move(places[static_cast<std::size_t>(i)]);
        return;
    }
    }
}

QList<QMdiSubWindow*> MdiFrame::topmostFirst() const
{
    QList<QMdiSubWindow*> children = area_->subWindowList(QMdiArea::StackingOrder);
    std::reverse(children.begin(), children.end());
    return children;
}

void MdiFrame::setWindowMenu(QMenu* menu)
{
    windowMenu_ = menu;
    if (menu)
        connect(menu, &QMenu::aboutToShow, this, &MdiFrame::listChildren);
}

void MdiFrame::listChildren()
{
    for (QAction* action : childActions_) {
        windowMenu_->removeAction(action);
        action->deleteLater();
    }
    childActions_.clear();
    if (!area_ || !windowMenu_)
        return;
    const QList<QMdiSubWindow*> children = area_->subWindowList(QMdiArea::CreationOrder);
    if (children.isEmpty())
        return;
    childActions_.append(windowMenu_->addSeparator());
    int number = 0;
    for (QMdiSubWindow* child : children) {
        ++number;
        QAction* action = windowMenu_->addAction(QStringLiteral("&%1 %2").arg(number).arg(child->windowTitle()));
        action->setCheckable(true);
        action->setChecked(child == area_->currentSubWindow());
        connect(action, &QAction::triggered, this, [this, child = QPointer<QMdiSubWindow>(child)] {
            if (child)
                area_->setActiveSubWindow(child);
        });
        childActions_.append(action);
    }
}

void MdiFrame::closeEvent(QCloseEvent* event)
{
    if (!closeRequested) {
        event->accept();
        return;
    }
    event->ignore();
    closeRequested();
}

} // namespace marlune::qt
