// The frame shows its model's menus and tool bar exactly, and the terminal works through it.
#include <QAction>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTextBrowser>
#include <QToolBar>

#include <gtest/gtest.h>

#include <iostream>

#include "forms/control.h"
#include "qt/form_binder.h"
#include "qt/help_browser.h"
#include "qt/mdi_frame.h"
#include "qt/menu_builder.h"
#include "qt_test_support.h"
#include "shell/frm_main.h"
#include "shell/program.h"
#include "tools/terminal.h"

namespace marlune::qt::test {
namespace {

QString Text(const std::string& s) { return QString::fromStdString(s); }

class Frame : public testing::Test {
protected:
    Frame()
    {
        program.Main();
        frame = desk.platform.frame();
    }

    void Screenshot(QWidget& window, const char* name)
    {
        const QString path = QDir(QStringLiteral(MARLUNE_SCREENSHOT_DIR)).filePath(QString::fromLatin1(name));
        QDir().mkpath(QStringLiteral(MARLUNE_SCREENSHOT_DIR));
        ASSERT_TRUE(window.grab().save(path, "PNG")) << path.toStdString();
        std::cout << "screenshot: " << path.toStdString() << '\n';
    }

    QtDesk desk;
    shell::Program program;
    MdiFrame* frame = nullptr;
};

// The menu bar walked in order: each entry with its parent's name, caption and shortcut.
void Walk(const QList<QAction*>& actions, const QString& parent, std::vector<std::vector<QString>>& out)
{
    for (QAction* action : actions) {
        const QString caption = action->isSeparator() ? QStringLiteral("-") : action->text();
        out.push_back({action->objectName(), parent, caption, action->shortcut().toString(QKeySequence::PortableText)});
        if (action->menu())
            Walk(action->menu()->actions(), action->objectName(), out);
    }
}

TEST_F(Frame, MenusAreExactlyTheModels)
{
    ASSERT_NE(frame, nullptr);
    std::vector<std::vector<QString>> expected;
    for (forms::Control* control : program.frame().controls()) {
        if (auto* item = dynamic_cast<forms::MenuItem*>(control))
            expected.push_back(
                    {Text(item->name()), Text(item->parent()), Text(item->caption()), Text(item->shortcut())});
    }
    std::vector<std::vector<QString>> shown;
    Walk(frame->menuBar()->actions(), QString(), shown);
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(expected.size(), 41u);
}

TEST_F(Frame, ToolBarIsExactlyTheModelsWithPicturesAndNoText)
{
    auto* bar = frame->findChild<QToolBar*>(QStringLiteral("tbToolBar"));
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->toolButtonStyle(), Qt::ToolButtonIconOnly);
    const auto& buttons = program.frame().tbToolBar.buttons();
    const QList<QAction*> actions = bar->actions();
    ASSERT_EQ(actions.size(), static_cast<qsizetype>(buttons.size()));
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        QAction* action = actions[static_cast<qsizetype>(i)];
        SCOPED_TRACE(i);
        EXPECT_EQ(action->isSeparator(), buttons[i].key.empty());
        if (buttons[i].key.empty())
            continue;
        EXPECT_EQ(action->data().toString(), Text(buttons[i].key));
        EXPECT_EQ(action->toolTip(), Text(buttons[i].toolTip));
        EXPECT_FALSE(action->icon().isNull());
    }
}

TEST_F(Frame, TheTerminalOpensFromTheMenuAndAnEnterRunsTheCommand)
{
    desk.com.replies["???"] = "@0,0,0,0.";
    tools::Terminal& terminal = program.terminal();
    QAction* menu = frame->menuBar()->findChild<QAction*>(QStringLiteral("mnuToolsTerminal"));
    ASSERT_NE(menu, nullptr);
    bool ran = false;
    QTimer::singleShot(0, [&] {
        QWidget* window = desk.platform.window(terminal);
        ASSERT_NE(window, nullptr);
        EXPECT_TRUE(window->isModal());
        EXPECT_EQ(window->windowTitle(), "Marlune Terminal");
        auto* line = window->findChild<QLineEdit*>(QStringLiteral("CommandLine"));
        auto* log = window->findChild<QPlainTextEdit*>(QStringLiteral("LogWindow"));
        for (const QChar c : QStringLiteral("???")) {
            QKeyEvent press(QEvent::KeyPress, c.unicode(), Qt::NoModifier, QString(c));
            QApplication::sendEvent(line, &press);
        }
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        QApplication::sendEvent(line, &enter);
        EXPECT_EQ(desk.com.requests, std::vector<std::string>{"???"});
        EXPECT_TRUE(log->toPlainText().contains(QStringLiteral("REPLY:@0,0,0,0.")));
        EXPECT_EQ(line->text(), "");
        window->resize(640, 420);
        Screenshot(*window, "Terminal.png");
        ran = true;
        window->close(); // the close box: the form unloads and the showing ends
    });
    menu->trigger();
    EXPECT_TRUE(ran);
    EXPECT_FALSE(terminal.loaded());
    EXPECT_EQ(desk.platform.window(terminal), nullptr);
}

TEST_F(Frame, RendersTidily)
{
    frame->show();
    Settle();
    Screenshot(*frame, "frmMain.png");
    EXPECT_EQ(frame->windowTitle(), "MarluneDesk");
    EXPECT_EQ(frame->findChild<QLabel*>(QStringLiteral("sbTime"))->text().isEmpty(), false);
}

TEST_F(Frame, TheCloseBoxUnloadsTheFrameWhichSavesItsPlaceAndEndsTheProgram)
{
    QSettings(QStringLiteral("Marlune"), QStringLiteral("Marlune Desk")).clear();
    bool ended = false;
    QObject::connect(&desk.platform, &QtPlatform::frameUnloaded, [&] { ended = true; });
    frame->setGeometry(40, 50, 800, 600);
    frame->close();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(program.frame().loaded());
    QSettings settings(QStringLiteral("Marlune"), QStringLiteral("Marlune Desk"));
    EXPECT_EQ(settings.value(QStringLiteral("Settings/MainWidth")).toString().toInt(),
              program.frame().width * shell::kTwipsPerPixel);
    EXPECT_GE(program.frame().width, 800);
}

class ChildForm final : public forms::Form {
public:
    explicit ChildForm(const std::string& caption) : forms::Form("Child", caption), Text(add<forms::TextBox>("Text")) {}
    forms::TextBox& Text;
};

TEST_F(Frame, ChildrenAreListedInTheWindowMenuTiledAndActivated)
{
    frame->resize(900, 600);
    frame->show();
    ChildForm first("First"), second("Second"), third("Third");
    for (ChildForm* child : {&first, &second, &third}) {
        child->load();
        desk.platform.showModeless(*child, &program.frame());
    }
    EXPECT_EQ(desk.platform.activeChild(), &third);
    desk.platform.activate(first);
    EXPECT_EQ(desk.platform.activeChild(), &first);

    QMenu* window = desk.platform.binder(program.frame())->menu("mnuWindow");
    ASSERT_NE(window, nullptr);
    emit window->aboutToShow();
    QStringList listed;
    for (QAction* action : window->actions()) {
        if (action->objectName().isEmpty() && !action->isSeparator())
            listed << action->text();
    }
    EXPECT_EQ(listed, (QStringList{"&1 First", "&2 Second", "&3 Third"}));

    // Tile vertically: side by side, the topmost (the active one) first, each the full height.
    desk.platform.arrange(forms::Arrangement::TileVertical);
    const QRect area = frame->area().viewport()->rect();
    const QRect firstPlace = desk.platform.window(first)->parentWidget()->geometry();
    EXPECT_EQ(firstPlace.topLeft(), area.topLeft());
    EXPECT_EQ(firstPlace.height(), area.height());
    desk.platform.arrange(forms::Arrangement::TileHorizontal);
    EXPECT_EQ(desk.platform.window(first)->parentWidget()->geometry().width(), area.width());

    first.unload();
    Settle();
    EXPECT_EQ(frame->area().subWindowList().size(), 2);
    EXPECT_NE(desk.platform.activeChild(), &first);
}

TEST_F(Frame, HelpShowsTheLanguageManual)
{
    ASSERT_TRUE(LocateManual().has_value()) << "docs/controller-language.md belongs to the sources";
    const auto error = desk.platform.showHelp("Marlune KV Language Manual.hlp", 3);
    ASSERT_FALSE(error.has_value()) << *error;
    HelpBrowser* help = desk.platform.helpBrowser();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    EXPECT_GT(help->browser().document()->blockCount(), 10);
    help->close();
}

} // namespace
} // namespace marlune::qt::test
