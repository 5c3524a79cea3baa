// The program's windows on the Qt desktop: the frame shows its model's menus and tool bar
// exactly, opens the terminal, arranges its children and ends the program when it closes;
// every .ui layout matches its form one to one; the motion panel repaints only what changed;
// the transfer dialog's bar moves under the desktop's own 1 ms timer and the comparison shows
// its differences as rows; the program editor colours the language and numbers its lines.
#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QEventLoop>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolBar>
#include <QWheelEvent>

#include <chrono>
#include <memory>
#include <thread>

#include "forms/control.h"
#include "headless/headless_platform.h"
#include "link/command_exchange.h"
#include "link/exchange_log.h"
#include "panel/main_control.h"
#include "panel/scope.h"
#include "project/project_manager.h"
#include "project/project_program.h"
#include "project/projects.h"
#include "qt/form_binder.h"
#include "qt/form_layouts.h"
#include "qt/help_browser.h"
#include "qt/mdi_frame.h"
#include "qt/plot_host.h"
#include "qt/program_editor.h"
#include "qt/program_highlighter.h"
#include "qt/shown_text.h"
#include "qt/text_sync.h"
#include "qt_test_support.h"
#include "shell/frm_main.h"
#include "tools/communication_log.h"
#include "tools/terminal.h"
#include "transfer/compare_memory.h"
#include "transfer/status.h"

namespace marlune::qt::test {
namespace {

class Frame : public DeskTest {
protected:
    Frame()
    {
        program.Main();
        frame = desk.platform.frame();
    }

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
        auto* line = window->findChild<QLineEdit*>(QStringLiteral("CommandLine"));
        Type(line, QStringLiteral("???"));
        Key(line, Qt::Key_Return, QStringLiteral("\r"));
        EXPECT_TRUE(window->findChild<QPlainTextEdit*>()->toPlainText().contains(QStringLiteral("REPLY:@0,0,0,0.")));
        // The Test button lies out of reach below the window; Close lies inside.
        window->resize(640, 420);
        Settle();
        auto* close = window->findChild<QWidget*>(QStringLiteral("CloseTerminal"));
        EXPECT_TRUE(window->findChild<QWidget*>(QStringLiteral("Test"))->visibleRegion().isEmpty());
        EXPECT_TRUE(window->rect().contains(QRect(close->mapTo(window, QPoint(0, 0)), close->size())));
        EXPECT_TRUE(SaveScreenshot(*window, "Terminal.png"));
        window->close();
    });
    frame->menuBar()->findChild<QAction*>(QStringLiteral("mnuToolsTerminal"))->trigger();
    EXPECT_FALSE(terminal.loaded());
    EXPECT_EQ(desk.platform.window(terminal), nullptr);
}

// The log opens from the Tools menu in a window of its own and adds the next exchange on its timer
// to the lines it shows, the newest selected; the picture shows a failure marked.
TEST_F(Frame, TheCommunicationLogShowsTheExchangesAndTakesNewOnes)
{
    link::Log() = link::ExchangeLog{};
    desk.com.failNext("V1", 1);
    for (std::string command : {"X5000", "V1", "???"}) {
        std::string reply;
        link::SendCommand(command, reply);
        if (command == "V1")
            frame->menuBar()->findChild<QAction*>(QStringLiteral("mnuToolsCommunicationLog"))->trigger();
    }
    QWidget* window = desk.platform.window(*program.findForm("CommunicationLog"));
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(window->isModal());
    auto* list = window->findChild<QListWidget*>(QStringLiteral("Exchanges"));
    const QListWidgetItem* first = list->item(0);
    for (int look = 0; look < 100 && list->count() < 3; ++look) {
        QEventLoop wait;
        QTimer::singleShot(tools::CommunicationLog::kRefreshMs / 5, &wait, &QEventLoop::quit);
        wait.exec();
    }
    EXPECT_EQ(list->count(), 3);
    EXPECT_EQ(list->currentRow(), 2);
    EXPECT_EQ(list->item(0), first) << "a list that grows keeps the lines it shows";
    EXPECT_TRUE(SaveScreenshot(*window, "CommunicationLog.png"));
    window->close();
    EXPECT_FALSE(program.findForm("CommunicationLog")->loaded());
}

TEST_F(Frame, ChildrenAreListedInTheWindowMenuTiledAndActivated)
{
    frame->resize(900, 600);
    frame->show();
    forms::Form first("Child", "First"), second("Child", "Second"), third("Child", "Third");
    for (forms::Form* child : {&first, &second, &third}) {
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
    const auto place = [&] { return desk.platform.window(first)->parentWidget()->geometry(); };
    EXPECT_EQ(place(), QRect(area.topLeft(), QSize(place().width(), area.height())));
    desk.platform.arrange(forms::Arrangement::TileHorizontal);
    EXPECT_EQ(place().width(), area.width());

    first.unload();
    Settle();
    EXPECT_EQ(frame->area().subWindowList().size(), 2);
    EXPECT_NE(desk.platform.activeChild(), &first);
}

// The manager and a program side by side, as the operator sees them: the definitions reach the
// editor as names to mark, the frame's title names the changed project, and a resize of the frame
// tiles the programs again, which leaves the manager active. The frame's close box then asks the
// project's question before any window goes: No keeps the program window as it stands; Yes unloads
// the frame, which saves its place and ends the program.
TEST_F(Frame, TheProjectWindowsStandSideBySideAndTheCloseBoxAsksTheProjectFirst)
{
    QSettings(QStringLiteral("Marlune"), QStringLiteral("Marlune Desk")).clear();
    bool ended = false;
    QObject::connect(&desk.platform, &QtPlatform::frameUnloaded, [&] { ended = true; });
    frame->resize(1000, 560);
    frame->show();
    project::Projects& projects = program.projects();
    projects.NewProject();
    projects.manager().displayProg(1).operatorClick();
    projects.manager().DefinitionList.setText("COUNT=V1\r\nFAR=4000\r\n");
    project::FrmProjectProgram& window = *projects.programWindow(1);
    window.programText.setText(
            "ABS ; back and forth\r\nWHILE COUNT<5\r\n  XFAR\r\n  WAITX\r\n  COUNT=COUNT+1\r\nENDWHILE");
    QWidget* editor = desk.platform.window(window)->findChild<QWidget*>(QStringLiteral("programText"));
    EXPECT_EQ(editor->property(kMarkedWords).toStringList(), (QStringList{"COUNT", "FAR"}));
    EXPECT_EQ(frame->windowTitle(), QStringLiteral("Untitled[*] - MarluneDesk"));
    EXPECT_TRUE(frame->isWindowModified());
    Settle();
    EXPECT_TRUE(SaveScreenshot(*frame, "ProjectWindows.png"));
    desk.platform.activate(window);
    frame->resize(frame->width() + 40, frame->height() + 30);
    QApplication::processEvents();
    EXPECT_EQ(desk.platform.activeChild(), &projects.manager());

    for (const QMessageBox::StandardButton answer : {QMessageBox::No, QMessageBox::Yes}) {
        QTimer::singleShot(0, [answer] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->button(answer)->click();
        });
        frame->close();
        EXPECT_EQ(projects.programWindowOpen(1), answer == QMessageBox::No);
        EXPECT_EQ(program.frame().loaded(), answer == QMessageBox::No);
        EXPECT_EQ(ended, answer == QMessageBox::Yes);
    }
    QSettings settings(QStringLiteral("Marlune"), QStringLiteral("Marlune Desk"));
    EXPECT_EQ(settings.value(QStringLiteral("Settings/MainWidth")).toString().toInt(),
              program.frame().width * shell::kTwipsPerPixel);
    EXPECT_GE(program.frame().width, 1000);
}

// Each stretch of a line with the kind of word it is coloured as; small letters count as capitals,
// and defined names go over everything the download replaces, found as the download finds them.
TEST(ProgramEditor, ColoursCommandWordsVariablesNumbersAndComments)
{
    const QStringList kinds = {"command", "variable", "number", "comment", "name"};
    ProgramEditor editor;
    editor.setPlainText(QStringLiteral("delay V2+500 ; wait\nXV5 ' go\nSPEED=SP ;SP\nPRINT \"SP\""));
    editor.setProperty(kMarkedWords, QStringList{"SP", "SPEED"});
    QStringList shown;
    for (QTextBlock block = editor.document()->begin(); block.isValid(); block = block.next()) {
        for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
            int kind = 0;
            while (kind < kinds.size() && range.format != ProgramWordFormat(static_cast<ProgramWord>(kind)))
                ++kind;
            shown << block.text().mid(range.start, range.length) + ':' + kinds.value(kind, "?");
        }
    }
    EXPECT_EQ(shown, (QStringList{"delay:command", "V2:variable", "500:number", "; wait:comment", "V5:variable",
                                  "' go:comment", "SP:name", "SP:name", ";:comment", "SP:name"}));
}

TEST(ProgramEditor, TheLineNumberMarginGrowsWithTheDigitsOfTheLineCount)
{
    ProgramEditor editor;
    std::vector<int> margins;
    for (const int lines : {1, 9, 10, 100}) {
        editor.setPlainText(QStringLiteral("X1\n").repeated(lines - 1));
        margins.push_back(editor.viewport()->x());
    }
    EXPECT_EQ(margins[0], margins[1]);
    EXPECT_LT(margins[1], margins[2]);
    EXPECT_LT(margins[2], margins[3]);
}

// Find goes on from the top and keeps the caret when nothing matches; Go to Line stays within the text.
TEST(ProgramEditor, FindWrapsAroundAndGoToLineStaysInTheText)
{
    ProgramEditor editor;
    editor.setPlainText(QStringLiteral("X1\nWAITX\nX2\nEND"));
    editor.goToLine(3);
    std::vector<int> lines{editor.textCursor().blockNumber()};
    for (const char* term : {"X", "X", "WAIT", "nothing"}) {
        const bool found = editor.findNext(QString::fromLatin1(term));
        lines.push_back(found ? editor.textCursor().blockNumber() : -editor.textCursor().blockNumber());
    }
    editor.goToLine(99);
    lines.push_back(editor.textCursor().blockNumber());
    EXPECT_EQ(lines, (std::vector<int>{2, 2, 0, 1, -1, 3}));
}

TEST_F(Frame, HelpShowsTheLanguageManual)
{
    const auto error = desk.platform.showHelp("Marlune KV Language Manual.hlp", 3);
    ASSERT_FALSE(error.has_value()) << *error;
    HelpBrowser* help = desk.platform.helpBrowser();
    EXPECT_TRUE(help->isVisible());
    EXPECT_GT(help->browser().document()->blockCount(), 10);
    help->close();
}

// The setup dialogs and About open from their menus, tidy at their designed size; Escape closes About.
TEST_F(Frame, TheSetupDialogsAndAboutOpenTidyFromTheirMenus)
{
    desk.com.setDefaultReply("5592405");
    // A description long enough to wrap over several lines, as the router's can be.
    program.servingLinks = "built-in links: simulated controller (USB 1.1, its EEPROM kept in /home/operator/.local/"
                           "share/Marlune/Marlune Desk/simulated-controller.eeprom), TCP (Ethernet), serial port (USB "
                           "2.0 VCP); no maker's library (cannot load it: the shared object file was not found in "
                           "/usr/lib, /usr/local/lib, /opt/marlune/lib or beside the program, and no other folder "
                           "of the library path holds it either)";
    for (const char* menu :
         {"mnuSetup", "mnuSetupJoystick", "mnuSetupEncoderControl", "mnuSetupCommunication", "mnuHelpAbout"}) {
        QTimer::singleShot(0, [&] {
            QWidget* window = QApplication::activeModalWidget();
            Settle();
            for (QWidget* widget : window->findChildren<QWidget*>()) {
                const QRect rect(widget->mapTo(window, QPoint(0, 0)), widget->size());
                EXPECT_TRUE(!ShowsAControl(*widget) || window->rect().contains(rect))
                        << menu << " cuts off " << widget->objectName().toStdString();
                EXPECT_TRUE(!ShowsAControl(*widget) || widget->height() >= widget->minimumSizeHint().height())
                        << menu << " squeezes " << widget->objectName().toStdString();
            }
            EXPECT_TRUE(SaveScreenshot(*window, (window->objectName() + ".png").toLatin1().constData()));
            if (window->objectName() == "frmAbout")
                Key(window, Qt::Key_Escape);
            else
                window->close();
        });
        frame->menuBar()->findChild<QAction*>(QString::fromLatin1(menu))->trigger();
    }
    EXPECT_FALSE(program.findForm("frmAbout")->loaded());
}

using Layouts = DeskTest;
using PanelWindow = DeskTest;
using TransferWindows = DeskTest;

TEST_F(Layouts, EveryLayoutMatchesItsFormOneToOne)
{
    program.frame();
    program.terminal();
    program.mainControl();
    program.status();
    program.compareMemory();
    program.projects().manager();
    program.projects().makeProgramWindow(1);
    program.setup();
    program.setupJoystick();
    program.setupEncoderControl();
    program.comSetup();
    program.devSerListSel();
    program.about();
    program.communicationLog();
    for (const FormLayout& layout : FormLayouts()) {
        SCOPED_TRACE(std::string(layout.formName));
        // A family of windows is found by its first member.
        forms::Form* form = program.findForm(layout.formName);
        if (!form)
            form = program.findForm(std::string(layout.formName) + "[1]");
        ASSERT_NE(form, nullptr) << "a layout for a form the program does not have";
        std::unique_ptr<QWidget> window = layout.frame ? std::make_unique<QMainWindow>() : std::make_unique<QWidget>();
        layout.setUp(*window);
        for (forms::Control* control : form->controls()) {
            const bool shown =
                    control->kind() != forms::ControlKind::Timer && control->kind() != forms::ControlKind::MenuItem;
            EXPECT_EQ(window->findChildren<QWidget*>(QString::fromStdString(control->name())).size(), shown ? 1 : 0)
                    << control->name() << " needs exactly one widget";
        }
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            const std::string name = widget->objectName().toStdString();
            EXPECT_TRUE(!ShowsAControl(*widget) || form->control(name))
                    << "the " << widget->metaObject()->className() << " '" << name << "' has no control";
        }
        // Each control's widget is of a kind that shows it.
        FormBinder binder(*form, *window);
        EXPECT_TRUE(binder.unbound().empty()) << binder.unbound().front();
    }
}

class PaintCounter final : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

const char* const kStatus = "@1200,-35,0,0,1199,-35,0,0,4000,0,0,0,4,24,0,0,16.1,1,0,0,0,12,1,1,1.0,1.";

// The status area is marked until a status reply is read and once polling stopped, and a poll
// with no changed values repaints nothing. The scope opens in a window of its own that the modal
// panel's window owns; the chart module draws a move's speed and position and an output's step,
// the operator's wheel reaches the model, the picture is saved as PNG, and the panel's unload
// takes the scope along.
TEST_F(PanelWindow, MarksItsStatusRepaintsOnlyWhatChangedAndItsScopeDrawsBesideItAndGoesWithIt)
{
    for (const auto& [request, reply] :
         {std::pair{"I12", "48"}, {"HSPD", "4000"}, {"LSPD", "500"}, {"ACCEL", "100"}, {"???", kStatus}})
        desk.com.setReply(request, reply);
    link::Link().linkKind = 1;
    panel::MainControl& panel = program.mainControl();
    panel::Scope& scope = panel.scope();
    bool ran = false;
    QTimer::singleShot(0, [&] {
        QWidget* panelWindow = desk.platform.window(panel);
        panelWindow->resize(panelWindow->sizeHint().expandedTo(QSize(980, 600)));
        const auto mark = [panelWindow] {
            return QStringList{panelWindow->findChild<QLabel*>("statusMark")->text(),
                               panelWindow->findChild<QWidget*>("MotorStatusFrame")->isEnabled() ? "live" : "grey"};
        };
        EXPECT_EQ(mark(), (QStringList{"Not updated yet: no status reply has been read", "grey"}));
        panel.pollTick();
        Settle();
        EXPECT_EQ(mark(), (QStringList{"", "live"}));
        EXPECT_TRUE(SaveScreenshot(*panelWindow, "MainControl.png"));

        PaintCounter counter;
        for (QWidget* widget : panelWindow->findChildren<QWidget*>())
            widget->installEventFilter(&counter);
        const std::size_t before = desk.com.calls().size();
        panel.pollTick();
        Settle();
        EXPECT_EQ(desk.com.calls().size(), before + 1) << "one poll went out";
        EXPECT_EQ(counter.paints, 0) << "a poll with no changed values repaints nothing";
        desk.com.setReply("???", QString(kStatus).replace("1200", "1201").toStdString());
        panel.pollTick();
        Settle();
        EXPECT_GT(counter.paints, 0) << "a changed position is painted";

        headless::HeadlessPlatform seen; // takes the message, which the desktop would show modally
        forms::SetPlatform(&seen);
        desk.com.failNext("???", 1);
        panel.pollTick();
        forms::SetPlatform(&desk.platform);
        Settle();
        EXPECT_EQ(mark(), (QStringList{"Not updating: the link was lost", "grey"}));
        EXPECT_EQ(panelWindow->findChild<QLineEdit*>("PosX")->text(), "1201") << "the last readings stay";
        panelWindow->findChild<QPushButton*>("Reconnect")->click();
        EXPECT_EQ(mark(), (QStringList{"Not updating: the link was lost", "grey"})) << "until a reply is read";
        panel.pollTick();
        Settle();
        EXPECT_EQ(mark(), (QStringList{"", "live"}));

        // The panel's own polls get no status from here on, so the picture holds the move alone.
        desk.com.setReply("???", "?");
        panelWindow->findChild<QPushButton*>("Scope")->click();
        QWidget* window = desk.platform.window(scope);
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->parentWidget(), panelWindow);
        EXPECT_TRUE(window->isWindow());
        auto* host = window->findChild<PlotHost*>("Chart");
        ASSERT_TRUE(host->hasView()) << PlotHost::moduleError().toStdString();
        window->findChild<QCheckBox*>("ShowEOX")->click();
        for (int repeat = 0; repeat < 5; ++repeat)
            scope.ZoomIn.operatorClick();
        // A trapezoid of speed over 80 samples 10 ms apart; the enable output of X goes on midway.
        std::int32_t position = 0;
        for (int i = 0; i < 80; ++i) {
            const int speed = 200 * std::min({i, 20, 80 - i});
            position += speed / 100;
            scope.panelReply("@" + std::to_string(position) + ",0,0,0,0,0,0,0," + std::to_string(speed)
                             + ",0,0,0,0,0,0,0,0." + (i < 40 ? "0" : "1") + ",0,0,0,0,1,1,1,1.0,0.");
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        const auto drawn = [host] { return host->findChild<QGraphicsView*>()->scene()->items().size(); };
        const qsizetype drawnBefore = drawn();
        scope.DrawTimer.tick();
        EXPECT_GT(drawn(), drawnBefore) << "the new trace is drawn";
        window->resize(900, 640);
        Settle();
        EXPECT_TRUE(SaveScreenshot(*window, "Scope.png"));

        const std::string range = *scope.Chart.property("range");
        QWidget* view = host->findChild<QAbstractScrollArea*>()->viewport();
        const QPointF middle(view->width() / 2.0, view->height() / 2.0);
        QWheelEvent wheel(middle, view->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view, &wheel);
        scope.DrawTimer.tick();
        EXPECT_NE(scope.Chart.property("range"), range) << "the wheel zooms out";

        const std::string picture = QDir::temp().filePath("marlune-scope-test.png").toStdString();
        EXPECT_EQ(desk.platform.savePicture(scope.Chart, picture), std::nullopt);
        EXPECT_EQ(QImage(QString::fromStdString(picture)).size(), host->size() * host->devicePixelRatio());
        QFile::remove(QString::fromStdString(picture));
        ran = true;
        panel.unload();
    });
    forms::ShowModal(panel, nullptr);
    EXPECT_TRUE(ran);
    EXPECT_EQ(desk.platform.window(scope), nullptr);
}

TEST_F(TransferWindows, TheBarMovesWhileVariablesAreReadAndDifferencesShowAsRows)
{
    desk.com.setDefaultReply("5");
    desk.com.setReply("V7", "9");
    link::Link().linkKind = 1;
    transfer::Status& status = program.status();
    status.operationType = static_cast<std::int16_t>(transfer::Operation::ReadMemory);
    // The bar is looked at every 20 ms until it stands between its ends, however busy the
    // machine is; it must show then what the model holds.
    int shownMidway = -1;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        QWidget* window = desk.platform.window(status);
        if (!window || shownMidway > 0)
            return;
        const int shown = window->findChild<QProgressBar*>(QStringLiteral("Progress"))->value();
        if (shown <= 0 || shown >= 10000)
            return;
        shownMidway = shown;
        EXPECT_EQ(shown, status.Progress.value());
        EXPECT_TRUE(SaveScreenshot(*window, "Status.png"));
    });
    look.start(20);
    status.showTransfer("Comparing Controller Memory with File", nullptr);
    look.stop();
    EXPECT_GT(shownMidway, 0);

    transfer::CompareMemory& compare = program.compareMemory();
    bool shown = false;
    QTimer::singleShot(0, [&] {
        QWidget* window = desk.platform.window(compare);
        ASSERT_NE(window, nullptr);
        auto* rows = window->findChild<QListWidget*>(QStringLiteral("Differences"));
        ASSERT_EQ(rows->count(), 2);
        EXPECT_EQ(rows->item(1)->text().simplified(), "V7 5 9");
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("Summary"))->text(), "2 variables differ from mem.dat.");
        EXPECT_TRUE(SaveScreenshot(*window, "frmCompareMemory.png"));
        shown = true;
        compare.unload();
    });
    compare.showDifferences("mem.dat",
                            transfer::FindDifferences({{"I2", 4}, {"V7", 5}, {"I1", 5}}, status.memoryValues));
    EXPECT_TRUE(shown);
}

} // namespace
} // namespace marlune::qt::test
