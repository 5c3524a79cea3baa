#include "qt/status_mark.h"

#include <QBoxLayout>
#include <QLabel>
#include <QWidget>

#include "panel/main_control.h"

namespace marlune::qt {

namespace {

// The frames whose values come from the status reply.
constexpr const char* kStatusFrames[] = {"MotorStatusFrame", "ProgramStatusFrame", "DigitalIOFrame", "OutputsFrame"};

} // namespace

StatusMark::StatusMark(panel::MainControl& panel, QWidget& window)
    : QObject(&window), panel_(panel), window_(window), label_(new QLabel(&window))
{
    label_->setObjectName(QStringLiteral("statusMark"));
    label_->setStyleSheet(QStringLiteral("font-weight: bold; color: #a00000;"));
    if (auto* row = window.findChild<QBoxLayout*>(QStringLiteral("linkRow")))
        row->insertWidget(0, label_, 1);
    // The panel outlives its windows: a callback of a window that has gone does nothing.
    panel_.onReadingsChanged = [mark = QPointer<StatusMark>(this)] {
        if (mark)
            mark->show();
    };
    show();
}

QString StatusMark::text() const
{
    switch (panel_.statusReadings()) {
    case panel::StatusReadings::Live: return {};
    case panel::StatusReadings::Stopped: return QStringLiteral("Not updating: the link was lost");
    case panel::StatusReadings::Placeholders: break;
    }
    return panel_.Reconnect.visible() ? QStringLiteral("Not updating: the link did not open")
                                      : QStringLiteral("Not updated yet: no status reply has been read");
}

void StatusMark::show()
{
    const QString mark = text();
    if (label_->text() != mark)
        label_->setText(mark);
    label_->setVisible(!mark.isEmpty());
    // A disabled frame greys every value in it, without touching the values' own state.
    for (const char* name : kStatusFrames) {
        QWidget* frame = window_.findChild<QWidget*>(QString::fromLatin1(name));
        if (frame && frame->isEnabled() != mark.isEmpty())
            frame->setEnabled(mark.isEmpty());
    }
}

} // namespace marlune::qt
