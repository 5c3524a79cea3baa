#pragma once

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <iostream>

#include "forms/platform.h"
#include "headless/scripted_controller.h"
#include "link/controller_link.h"
#include "qt/qt_platform.h"
#include "shell/program.h"

// Failures show text as text.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }

namespace marlune::qt::test {

// A Qt platform and a scripted controller set up as the program's, for one test.
class QtDesk {
public:
    QtDesk()
    {
        forms::SetPlatform(&platform);
        link::SetCom(&com);
        com.setDefaultReply("?");
    }
    ~QtDesk()
    {
        link::SetCom(nullptr);
        forms::SetPlatform(nullptr);
    }

    QtPlatform platform;
    headless::ScriptedController com;
};

// The program on that desktop.
class DeskTest : public testing::Test {
protected:
    QtDesk desk;
    shell::Program program;
};

// Lets posted events (deferred deletes, layout, paint) run.
inline void Settle()
{
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A key pressed as the desktop delivers it, and text typed key by key.
inline void Key(QWidget* widget, int key, const QString& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &press);
}

inline void Type(QWidget* widget, const QString& text)
{
    for (const QChar c : text)
        Key(widget, c.toUpper().unicode(), QString(c));
}

// Saves a picture of `window` for a person to look at.
// Pictures taken at a higher pixel density are named NAME@2x.png, beside those at 1.
inline bool SaveScreenshot(QWidget& window, const char* name)
{
    const QDir dir(QStringLiteral(MARLUNE_SCREENSHOT_DIR));
    dir.mkpath(QStringLiteral("."));
    QString file = QString::fromLatin1(name);
    if (const qreal ratio = window.devicePixelRatioF(); ratio != 1)
        file.replace(QStringLiteral(".png"), QStringLiteral("@%1x.png").arg(ratio));
    std::cout << "screenshot: " << dir.filePath(file).toStdString() << '\n';
    return window.grab().save(dir.filePath(file), "PNG");
}

} // namespace marlune::qt::test
