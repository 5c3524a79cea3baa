// The motion panel against marlune-sim over TCP with the desk's own time-outs, while the
// controller hangs (SIGSTOP) and comes back (SIGCONT). Stop pressed on the hung controller
// must return within 2.5 s (stop_of_limit under 1); once the controller is back, the poll
// that follows half a second later must show its status record (polls_to_status 1).

#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "marlunecom/tcp_com.h"
#include "panel/main_control.h"
#include "panel/monitor_ai.h"
#include "panel/new_pos.h"
#include "sim_process.h"
#include "tools/program_viewer.h"
#include "transfer/status.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

namespace {

using namespace marlune;
using Clock = std::chrono::steady_clock;

constexpr double kStopLimitSeconds = 2.5;
constexpr int kPollLimit = 5;

double SecondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

void BM_StopOnAHungController(benchmark::State& state)
{
    testing::SimProcess simulator(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--exit-after", "600"});
    const auto port = simulator.tcpPort();
    if (!port) {
        state.SkipWithError("marlune-sim did not start");
        return;
    }
    // The panel keeps its settings in the working folder.
    const auto previousDir = std::filesystem::current_path();
    const auto workDir = std::filesystem::temp_directory_path() / ("marlune-hung-" + std::to_string(::getpid()));
    std::filesystem::create_directories(workDir);
    std::filesystem::current_path(workDir);

    headless::HeadlessPlatform platform;
    marlunecom::TcpCom com;
    forms::SetPlatform(&platform);
    link::SetCom(&com);
    link::ResetLink();
    link::Link().linkKind = 2;
    link::Link().ipAddress = "127.0.0.1:" + std::to_string(*port);
    panel::NewPos newPos;
    panel::MonitorAI monitor;
    transfer::Status status;
    tools::ProgramViewer viewer(status);
    panel::MainControl panel(newPos, monitor, viewer);

    int round = 0;
    for (auto _ : state) {
        if (!panel.load() || !link::Link().connected) {
            state.SkipWithError("the panel did not open the link");
            break;
        }
        panel.Sel[0]->setValue(1);
        const std::string position = std::to_string(1000 + ++round);
        std::string command = "PX=" + position;
        std::string reply;
        link::SendCommand(command, reply);

        simulator.signal(SIGSTOP);
        const auto pressed = Clock::now();
        panel.Stop.onClick();
        const double stopSeconds = SecondsSince(pressed);
        simulator.signal(SIGCONT);

        // The desk's poll timer ticks half a second later in real time as well.
        panel.Pos[0]->setText("stale");
        int polls = 0;
        while (panel.Pos[0]->text() != position && polls < kPollLimit && link::Link().connected) {
            std::this_thread::sleep_for(std::chrono::milliseconds(panel.Timer1.interval()));
            platform.advance(platform.now() + panel.Timer1.interval());
            ++polls;
        }
        panel.unload();

        state.SetIterationTime(stopSeconds);
        state.counters["stop_of_limit"] = stopSeconds / kStopLimitSeconds;
        state.counters["polls_to_status"] = panel.Pos[0]->text() == position ? polls : kPollLimit + 1;
    }

    link::SetCom(nullptr);
    forms::SetPlatform(nullptr);
    std::filesystem::current_path(previousDir);
    std::filesystem::remove_all(workDir);
}
BENCHMARK(BM_StopOnAHungController)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true);

} // namespace

BENCHMARK_MAIN();
