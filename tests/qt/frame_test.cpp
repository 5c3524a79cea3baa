// The frame shows its model's menus and tool bar exactly, arranges its children, and ends
// the program when it closes.
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

#include "forms/control.h"
#include "qt/form_binder.h"
#include "qt/help_browser.h"
#include "qt/mdi_frame.h"
#include "qt/shown_text.h"
#include "qt_test_support.h"
#include "shell/frm_main.h"
#include "shell/program.h"
#include "tools/terminal.h"

namespace marlune::qt::test {
namespace {

class Frame : public testing::Test {
protected:
    Frame()
    {
        program.Main();
        frame = desk.platform.frame();
    }

    QtDesk desk;
    shell::Program program;
    MdiFrame* frame = nullptr;
};

// The menu bar walked in order: each entry as its name, its parent's name, caption and shortcut.
void Walk(const QList<QAction*>& actions, const QString& parent, QStringList& out)
{
    for (QAction* action : actions) {
        const QString caption = action->isSeparator() ? QStringLiteral("-") : action->text();
        out << action->objectName() + '|' + parent + '|' + caption + '|'
                        + action->shortcut().toString(QKeySequence::PortableText);
        if (action->menu())
            Walk(action->menu()->actions(), action->objectName(), out);
    }
}

TEST_F(Frame, ShowsTheModelsMenusAndToolBarExactlyAndRendersTidily)
{
    frame->show();
    Settle();
    EXPECT_TRUE(SaveScreenshot(*frame, "frmMain.png"));
    EXPECT_EQ(frame->windowTitle(), "MarluneDesk");
    EXPECT_FALSE(frame->findChild<QLabel*>(QStringLiteral("sbTime"))->text().isEmpty());

    QStringList expected, shown; // a tool bar's separator is "-"; a button its key, tool tip and picture
    for (forms::Control* control : program.frame().controls()) {
        if (auto* item = dynamic_cast<forms::MenuItem*>(control))
            expected << ShownText(item->name() + '|' + item->parent() + '|' + item->caption() + '|' + item->shortcut());
    }
    for (const forms::ToolButton& button : program.frame().tbToolBar.buttons())
        expected << (button.key.empty() ? QStringLiteral("-") : ShownText(button.key + '|' + button.toolTip + "|icon"));
    Walk(frame->menuBar()->actions(), QString(), shown);
    auto* bar = frame->findChild<QToolBar*>(QStringLiteral("tbToolBar"));
    for (const QAction* action : bar->actions())
        shown << (action->isSeparator() ? QStringLiteral("-")
                                        : action->data().toString() + '|' + action->toolTip()
                                                  + (action->icon().isNull() ? "|none" : "|icon"));
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(bar->toolButtonStyle(), Qt::ToolButtonIconOnly);
}

TEST_F(Frame, TheTerminalOpensModallyFromTheMenuRunsACommandAndItsCloseBoxUnloadsIt)
{
    desk.com.setReply("???", "@0,0,0,0.");
    tools::Terminal& terminal = program.terminal();
    QTimer::singleShot(0, [&] {
        QWidget* window = desk.platform.window(terminal);
        EXPECT_TRUE(window->isModal());
        EXPECT_EQ(window->windowTitle(), "Marlune Terminal");
        auto* line = window->findChild<QLineEdit*>(QStringLiteral("CommandLine"));
        Type(line, QStringLiteral("???"));
        Key(line, Qt::Key_Return, QStringLiteral("\r"));
        EXPECT_TRUE(window->findChild<QPlainTextEdit*>()->toPlainText().contains(QStringLiteral("REPLY:@0,0,0,0.")));
        EXPECT_EQ(line->text(), "");
        window->resize(640, 420);
        EXPECT_TRUE(SaveScreenshot(*window, "Terminal.png"));
        window->close();
    });
    frame->menuBar()->findChild<QAction*>(QStringLiteral("mnuToolsTerminal"))->trigger();
    EXPECT_EQ(Requests(desk.com), std::vector<std::string>{"???"});
    EXPECT_FALSE(terminal.loaded());
    EXPECT_EQ(desk.platform.window(terminal), nullptr);
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
    explicit ChildForm(const std::string& caption) : forms::Form("Child", caption) {}
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
    EXPECT_TRUE(help->isVisible());
    EXPECT_GT(help->browser().document()->blockCount(), 10);
    help->close();
}

} // namespace
} // namespace marlune::qt::test
