// The motion panel's scope at 10 ms sampling over TCP to marlune-sim with four axes moving.
// Targets: under 30 MB more memory for ten minutes of samples, and under 5 % of a core while it
// samples and draws.
//   ScopeSampleOverTcp    one sample of the scope's own: the status exchange and the record
//                         (cpu_percent_at_10ms: its CPU time against the 10 ms it has)
//   ScopeFullRing         ten minutes of samples at 10 ms: bytes per sample and the ring in MB,
//                         computed and as measured in the process's resident memory
//   ScopeRedraw12Traces   one redraw of ten minutes of 12 traces, offscreen, from the record to
//                         the picture (cpu_percent_at_10_per_s: ten of them a second); /0 the
//                         record's columns alone, /1 also the chart's lines, /2 also the picture
//   ScopeLiveOverTcp      the panel and its scope shown (offscreen) for 20 s at 10 ms with the 2
//                         traces shown at the start, /12 with 12: samples a second, CPU of the
//                         whole process, memory it took on. MARLUNE_SCOPE_SECONDS=600 makes it
//                         the ten minutes that fill the ring.
#include <benchmark/benchmark.h>

#include <QTimer>
#include <QWidget>

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "marlunecom/tcp_com.h"
#include "panel/main_control.h"
#include "panel/scope.h"
#include "panel/scope_record.h"
#include "qt/form_binder.h"
#include "qt/plot_host.h"
#include "qt/qt_platform.h"
#include "shell/program.h"
#include "sim_process.h"

namespace {

using namespace marlune;
using Quantity = panel::ScopeTrace::Quantity;

double CpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double ResidentMegabytes()
{
    long pages = 0;
    long resident = 0;
    if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(statm);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

// marlune-sim on a free port with the four axes on long moves, and the panel's settings file
// in a folder of its own.
class MovingController {
public:
    explicit MovingController(int seconds = 300)
        : simulator_(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--exit-after", std::to_string(seconds)})
    {
        previousDir_ = std::filesystem::current_path();
        workDir_ = std::filesystem::temp_directory_path() / ("marlune-scope-" + std::to_string(::getpid()));
        std::filesystem::create_directories(workDir_);
        std::filesystem::current_path(workDir_);
        port_ = simulator_.tcpPort();
    }
    ~MovingController()
    {
        std::filesystem::current_path(previousDir_);
        std::filesystem::remove_all(workDir_);
    }

    bool started() const { return port_.has_value(); }
    void useLink()
    {
        link::SetCom(&com_);
        link::ResetLink();
        link::Link().linkKind = 2;
        link::Link().ipAddress = "127.0.0.1:" + std::to_string(*port_);
    }
    // Once the panel has the link open.
    static void moveAllAxes()
    {
        for (const char* text :
             {"HSPD20000", "LSPD500", "ACCEL500", "INC", "X15000000", "Y14000000", "Z13000000", "U12000000"}) {
            std::string command = text;
            std::string reply;
            link::SendCommand(command, reply);
        }
    }

private:
    testing::SimProcess simulator_;
    std::optional<std::uint16_t> port_;
    marlunecom::TcpCom com_;
    std::filesystem::path previousDir_;
    std::filesystem::path workDir_;
};

void ChooseTwelveTraces(panel::Scope& scope)
{
    for (std::size_t a = 0; a < 4; ++a) {
        for (forms::CheckBox* box : {scope.ShowPos[a], scope.ShowEnc[a], scope.ShowSpd[a]})
            box->setValue(1);
    }
}

void ScopeSampleOverTcp(benchmark::State& state)
{
    MovingController controller;
    if (!controller.started()) {
        state.SkipWithError("marlune-sim did not start");
        return;
    }
    headless::HeadlessPlatform platform;
    forms::SetPlatform(&platform);
    // A new program starts without a link: the link is set after it.
    shell::Program program;
    controller.useLink();
    panel::MainControl& panel = program.mainControl();
    panel::Scope& scope = panel.scope();
    if (!panel.load() || !scope.load() || !link::Link().connected) {
        state.SkipWithError("the panel did not open the link");
        return;
    }
    MovingController::moveAllAxes();
    scope.Rate10.setValue(true);
    const double cpuAtStart = CpuSeconds();
    for (auto _ : state)
        scope.SampleTimer.tick();
    const double cpuPerSample = (CpuSeconds() - cpuAtStart) / static_cast<double>(state.iterations());
    state.counters["cpu_percent_at_10ms"] = 100 * cpuPerSample / 0.010;
    state.counters["samples_kept"] = static_cast<double>(scope.record().size());
    panel.unload();
    link::SetCom(nullptr);
    forms::SetPlatform(nullptr);
}
BENCHMARK(ScopeSampleOverTcp)->Unit(benchmark::kMicrosecond)->Iterations(3000)->Repetitions(5);

panel::ScopeSample Moving(std::size_t i)
{
    panel::ScopeSample sample{static_cast<std::int64_t>(i) * panel::kScopeFastestMs};
    for (std::size_t a = 0; a < 4; ++a) {
        const auto t = static_cast<std::int32_t>(i % 3000);
        sample.speed[a] = static_cast<std::int32_t>(std::min<std::size_t>({i % 3000, 1000, 3000 - i % 3000}) * 20);
        sample.pulse[a] = t * t / 4 + static_cast<std::int32_t>(a) * 1000;
        sample.encoder[a] = sample.pulse[a] - static_cast<std::int32_t>(a);
    }
    sample.logic = (i / 500) % 2 == 0 ? 0x01000001U : 0;
    return sample;
}

void ScopeFullRing(benchmark::State& state)
{
    for (auto _ : state) {
        const double before = ResidentMegabytes();
        panel::ScopeRecord record;
        for (std::size_t i = 0; i < panel::kScopeCapacity; ++i)
            record.add(Moving(i));
        state.counters["ring_MB_measured"] = ResidentMegabytes() - before;
        benchmark::DoNotOptimize(record.size());
    }
    state.counters["bytes_per_sample"] = sizeof(panel::ScopeSample);
    state.counters["samples"] = static_cast<double>(panel::kScopeCapacity);
    state.counters["ring_MB"] = sizeof(panel::ScopeSample) * static_cast<double>(panel::kScopeCapacity) / 1e6;
}
BENCHMARK(ScopeFullRing)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

class ChartForm final : public forms::Form {
public:
    ChartForm() : forms::Form("Chart", "Chart"), plot(add<forms::Plot>("Chart")) {}
    forms::Plot& plot;
};

void ScopeRedraw12Traces(benchmark::State& state)
{
    panel::ScopeRecord record;
    for (std::size_t i = 0; i < panel::kScopeCapacity; ++i)
        record.add(Moving(i));
    std::vector<panel::ScopeTrace> traces;
    for (const Quantity quantity : {Quantity::Pulse, Quantity::Encoder, Quantity::Speed}) {
        for (int a = 0; a < 4; ++a)
            traces.push_back({quantity, a});
    }
    ChartForm form;
    qt::PlotHost host;
    host.attach({}, {});
    if (!host.hasView()) {
        state.SkipWithError(qt::PlotHost::moduleError().toStdString().c_str());
        return;
    }
    host.resize(1200, 500);
    const double before = ResidentMegabytes();
    const std::int64_t newest = record.newest().timeMs;
    std::int64_t shift = 0;
    const double cpuAtStart = CpuSeconds();
    // How far each redraw goes: 0 the record's columns alone, 1 also the chart's lines, 2 also the picture.
    const auto stage = state.range(0);
    for (auto _ : state) {
        // A range a little later each time, as a live chart has it.
        const std::int64_t to = newest - (shift++ % 2) * 10;
        std::vector<forms::PlotSeries> series;
        for (const panel::ScopeTrace& trace : traces)
            series.push_back(record.series(trace, to - panel::kScopeKeptMs, to, static_cast<int>(state.range(1))));
        if (stage == 0) {
            benchmark::DoNotOptimize(series);
            continue;
        }
        form.plot.setContent(static_cast<double>(to - panel::kScopeKeptMs), static_cast<double>(to), std::move(series));
        host.showPlot(form.plot);
        if (stage == 2)
            benchmark::DoNotOptimize(host.grab());
    }
    const double cpuPerRedraw = (CpuSeconds() - cpuAtStart) / static_cast<double>(state.iterations());
    state.counters["cpu_percent_at_10_per_s"] = 100 * cpuPerRedraw * 10;
    state.counters["chart_MB_measured"] = ResidentMegabytes() - before;
}
BENCHMARK(ScopeRedraw12Traces)
        ->ArgsProduct({{0, 1, 2}, {400, 800}})
        ->Unit(benchmark::kMillisecond)
        ->Iterations(20)
        ->Repetitions(5);

int LiveSeconds()
{
    const char* seconds = std::getenv("MARLUNE_SCOPE_SECONDS");
    return seconds && std::atoi(seconds) > 0 ? std::atoi(seconds) : 20;
}

void ScopeLiveOverTcp(benchmark::State& state)
{
    const int seconds = LiveSeconds();
    MovingController controller(seconds + 60);
    if (!controller.started()) {
        state.SkipWithError("marlune-sim did not start");
        return;
    }
    qt::QtPlatform platform;
    forms::SetPlatform(&platform);
    // A new program starts without a link: the link is set after it.
    shell::Program program;
    controller.useLink();
    panel::MainControl& panel = program.mainControl();
    panel::Scope& scope = panel.scope();
    for (auto _ : state) {
        double cpuAtStart = 0;
        double memoryAtStart = 0;
        std::size_t samplesAtStart = 0;
        std::chrono::steady_clock::time_point wallAtStart;
        QTimer::singleShot(0, [&] {
            memoryAtStart = ResidentMegabytes();
            MovingController::moveAllAxes();
            panel.ScopeButton.operatorClick();
            if (state.range(0) == 12)
                ChooseTwelveTraces(scope);
            scope.Rate10.operatorClick();
        });
        // The first second settles the windows and the chart module.
        QTimer::singleShot(1000, [&] {
            cpuAtStart = CpuSeconds();
            samplesAtStart = scope.record().size();
            wallAtStart = std::chrono::steady_clock::now();
        });
        QTimer::singleShot(1000 + seconds * 1000, [&] {
            const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallAtStart).count();
            state.SetIterationTime(wall);
            state.counters["cpu_percent"] = 100 * (CpuSeconds() - cpuAtStart) / wall;
            // A full record has dropped its oldest samples: it is timed by what it holds.
            const panel::ScopeRecord& record = scope.record();
            state.counters["samples_per_s"] =
                    record.size() < panel::kScopeCapacity
                            ? static_cast<double>(record.size() - samplesAtStart) / wall
                            : static_cast<double>(record.size() - 1) * 1000
                                      / static_cast<double>(record.newest().timeMs - record.at(0).timeMs);
            state.counters["memory_taken_MB"] = ResidentMegabytes() - memoryAtStart;
            // Figures of a run whose controller went away would flatter the scope.
            if (!link::Link().connected || record.size() == samplesAtStart)
                state.SkipWithError("the link to marlune-sim was lost during the run");
            panel.unload();
        });
        forms::ShowModal(panel, nullptr);
    }
    link::SetCom(nullptr);
    forms::SetPlatform(nullptr);
}
BENCHMARK(ScopeLiveOverTcp)
        ->Arg(2)
        ->Arg(12)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(1);

} // namespace
