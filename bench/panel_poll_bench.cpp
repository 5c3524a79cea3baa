// What the open motion panel costs while it polls an idle controller twice a second: the
// process's CPU time over the wall time, with the panel's window shown (offscreen) and the
// built-in simulated controller answering.
#include <benchmark/benchmark.h>

#include <QTimer>

#include <sys/resource.h>

#include <chrono>

#include "forms/platform.h"
#include "link/controller_link.h"
#include "marlunecom/simulator_com.h"
#include "panel/main_control.h"
#include "qt/qt_platform.h"
#include "shell/program.h"

namespace {

using namespace marlune;

constexpr double kTargetPercentOfACore = 1.0;

double CpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void PanelPollingIdle(benchmark::State& state)
{
    qt::QtPlatform platform;
    marlunecom::SimulatorCom com;
    forms::SetPlatform(&platform);
    link::SetCom(&com);
    shell::Program program;
    link::Link().linkKind = 1;
    panel::MainControl& panel = program.mainControl();
    for (auto _ : state) {
        // Let the window settle and the first polls run before measuring.
        double cpuAtStart = 0;
        std::chrono::steady_clock::time_point wallAtStart;
        QTimer::singleShot(1000, [&] {
            cpuAtStart = CpuSeconds();
            wallAtStart = std::chrono::steady_clock::now();
        });
        QTimer::singleShot(6000, [&] { panel.unload(); });
        forms::ShowModal(panel, nullptr);
        const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallAtStart).count();
        const double percent = 100.0 * (CpuSeconds() - cpuAtStart) / wall;
        state.SetIterationTime(wall);
        state.counters["cpu_percent"] = percent;
        state.counters["cpu_of_target"] = percent / kTargetPercentOfACore;
    }
    link::SetCom(nullptr);
    forms::SetPlatform(nullptr);
}
BENCHMARK(PanelPollingIdle)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

} // namespace
