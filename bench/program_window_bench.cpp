// The program editor with a 10,000-line program: opening the program's window from the project
// manager until it has painted, and one typed key until the editor has painted again, with the
// language and the project's definitions highlighted.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <chrono>
#include <string>

#include "forms/platform.h"
#include "project/project_manager.h"
#include "project/project_program.h"
#include "project/projects.h"
#include "qt/qt_platform.h"
#include "shell/frm_main.h"
#include "shell/program.h"

namespace {

using namespace marlune;
using Clock = std::chrono::steady_clock;

constexpr double kOpenLimitMs = 200;
constexpr double kKeyLimitMs = 16;

std::string LongProgram()
{
    std::string text;
    for (int line = 0; line < 10000; ++line) {
        const std::string n = std::to_string(line);
        text += line % 4 == 0   ? "V" + std::to_string(line % 248 + 1) + "=MAXPOS-" + n + " ; step " + n
                : line % 4 == 1 ? "  XSPEED" + n
                : line % 4 == 2 ? "  WAITX"
                                : "IF V1<" + n;
        text += "\r\n";
    }
    return text;
}

double Milliseconds(Clock::time_point since)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

// The project manager of a new project with a 10,000-line program 1 and two definitions.
class Desk {
public:
    Desk()
    {
        forms::SetPlatform(&platform_);
        program_.Main();
        projects().NewProject();
        projects().state.section(1) = LongProgram();
        projects().manager().DefinitionList.setText("MAXPOS=5000\r\nSPEED=V2\r\n");
    }
    ~Desk()
    {
        projects().state.projectChanged = false;
        program_.frame().unload();
        forms::SetPlatform(nullptr);
    }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    project::Projects& projects() { return program_.projects(); }
    // Clicks the box of program 1 and returns when the window has painted.
    void toggleProgram()
    {
        projects().manager().displayProg(1).operatorClick();
        QApplication::processEvents();
        if (QPlainTextEdit* shown = editor())
            shown->viewport()->repaint();
    }
    QPlainTextEdit* editor()
    {
        project::FrmProjectProgram* window = projects().programWindow(1);
        if (!window || !window->loaded())
            return nullptr;
        return platform_.window(*window)->findChild<QPlainTextEdit*>(QStringLiteral("programText"));
    }

private:
    qt::QtPlatform platform_;
    shell::Program program_;
};

void OpenTenThousandLineProgram(benchmark::State& state)
{
    Desk desk;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        desk.toggleProgram();
        const double ms = Milliseconds(start);
        state.SetIterationTime(ms / 1000);
        state.counters["of_limit"] = ms / kOpenLimitMs;
        desk.toggleProgram();
    }
}
BENCHMARK(OpenTenThousandLineProgram)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);

void TypeOneKeyIntoTenThousandLines(benchmark::State& state)
{
    Desk desk;
    desk.toggleProgram();
    QPlainTextEdit& editor = *desk.editor();
    editor.setFocus();
    // In the middle of the program, where a key makes the most text move behind it.
    QTextCursor middle(editor.document()->findBlockByNumber(5000));
    editor.setTextCursor(middle);
    QApplication::processEvents();
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("A"));
        QApplication::sendEvent(&editor, &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier, QStringLiteral("A"));
        QApplication::sendEvent(&editor, &release);
        QApplication::processEvents();
        editor.viewport()->repaint();
        const double ms = Milliseconds(start);
        state.SetIterationTime(ms / 1000);
        state.counters["of_limit"] = ms / kKeyLimitMs;
    }
}
BENCHMARK(TypeOneKeyIntoTenThousandLines)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(50)
        ->Repetitions(5);

} // namespace
