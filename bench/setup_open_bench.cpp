// Opening the Setup dialog against marlune-sim over TCP loopback: the link opened, the five
// exchanges (I1, I2, I12, I13, IPA), the boxes filled and the link closed again. The median
// should stay under 5 ms.

#include "config/setup.h"
#include "forms/platform.h"
#include "headless/headless_platform.h"
#include "link/controller_link.h"
#include "marlunecom/tcp_com.h"
#include "sim_process.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

void BM_OpenSetupOverTcp(benchmark::State& state)
{
    marlune::testing::SimProcess simulator(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--exit-after", "120"});
    const auto port = simulator.tcpPort();
    if (!port) {
        state.SkipWithError("marlune-sim did not start");
        return;
    }
    marlune::headless::HeadlessPlatform platform;
    marlune::marlunecom::TcpCom com;
    marlune::forms::SetPlatform(&platform);
    marlune::link::SetCom(&com);
    marlune::link::ResetLink();
    marlune::link::Link().linkKind = 2;
    marlune::link::Link().ipAddress = "127.0.0.1:" + std::to_string(*port);
    marlune::config::Setup setup;
    for (auto _ : state) {
        setup.load();
        if (setup.readFailed()) {
            state.SkipWithError("the read failed");
            break;
        }
        setup.unload();
    }
    marlune::link::SetCom(nullptr);
    marlune::forms::SetPlatform(nullptr);
}
BENCHMARK(BM_OpenSetupOverTcp)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);

} // namespace

BENCHMARK_MAIN();
