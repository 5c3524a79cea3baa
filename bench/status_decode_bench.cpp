// Decoding one whole status reply into the panel's controls, as every poll does.
#include <benchmark/benchmark.h>

#include <string>

#include "link/controller_link.h"
#include "panel/main_control.h"
#include "panel/monitor_ai.h"
#include "panel/new_pos.h"
#include "tools/program_viewer.h"
#include "transfer/status.h"

namespace {

using namespace marlune;

const std::string kMoving = "@120345,-200,3000,4,120340,-201,5,6,4000,0,0,0,4,24,512,0,16.1,1,3,1,0,12,8,9,1.0,5.";
const std::string kStopped = "@120346,-200,3000,4,120341,-201,5,6,0,0,0,0,0,24,512,0,17.0,1,3,1,0,13,8,9,1.0,4.";

void BM_DecodeChangingReply(benchmark::State& state)
{
    link::ResetLink();
    panel::NewPos newPos;
    panel::MonitorAI monitor;
    transfer::Status status;
    tools::ProgramViewer viewer(status);
    panel::MainControl panel(newPos, monitor, viewer);
    panel.dioConfig = 0xF0;
    bool flip = false;
    for (auto _ : state) {
        panel.updateAllStatus(flip ? kMoving : kStopped);
        flip = !flip;
    }
}
BENCHMARK(BM_DecodeChangingReply);

void BM_DecodeSameReply(benchmark::State& state)
{
    link::ResetLink();
    panel::NewPos newPos;
    panel::MonitorAI monitor;
    transfer::Status status;
    tools::ProgramViewer viewer(status);
    panel::MainControl panel(newPos, monitor, viewer);
    for (auto _ : state)
        panel.updateAllStatus(kMoving);
}
BENCHMARK(BM_DecodeSameReply);

} // namespace

BENCHMARK_MAIN();
