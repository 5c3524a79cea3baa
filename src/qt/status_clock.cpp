#include "qt/status_clock.h"

#include <QLabel>
#include <QLocale>
#include <QStatusBar>

namespace marlune::qt {

namespace {

QLabel* Panel(QStatusBar& bar, const QString& name)
{
    auto* panel = new QLabel(&bar);
    panel->setObjectName(name);
    panel->setFrameShape(QFrame::Panel);
    panel->setFrameShadow(QFrame::Sunken);
    panel->setContentsMargins(6, 0, 6, 0);
    bar.addPermanentWidget(panel);
    return panel;
}

bool SetIfChanged(QLabel& label, const QString& text)
{
    if (label.text() == text)
        return false;
    label.setText(text);
    return true;
}

} // namespace

StatusClock::StatusClock(QStatusBar& bar)
    : QObject(&bar), date_(Panel(bar, QStringLiteral("sbDate"))), time_(Panel(bar, QStringLiteral("sbTime")))
{
    show(QDateTime::currentDateTime());
    timer_.setTimerType(Qt::CoarseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { show(QDateTime::currentDateTime()); });
    timer_.start(1000);
}

bool StatusClock::show(const QDateTime& now)
{
    const QLocale locale;
    const bool date = SetIfChanged(*date_, locale.toString(now.date(), QLocale::ShortFormat));
    // Hours and minutes, as the classic time panel has them, in the desktop's own order.
    static const QString timeFormat = [&locale] {
        QString format = locale.timeFormat(QLocale::ShortFormat);
        for (const char* seconds : {":ss", ".ss", ":s", ".s"})
            format.remove(QLatin1String(seconds));
        return format;
    }();
    const bool time = SetIfChanged(*time_, locale.toString(now.time(), timeFormat));
    return date || time;
}

} // namespace marlune::qt
