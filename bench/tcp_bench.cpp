// One status exchange over TCP loopback with marlune-sim, as the panel's poll makes it.
// The figure that matters is the median; it should stay well under 100 microseconds.

#include "link/marlune_com.h"
#include "marlunecom/tcp_com.h"
#include "sim_process.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using marlune::marlunecom::TcpCom;
using marlune::testing::SimProcess;

void BM_TcpStatusExchange(benchmark::State& state)
{
    SimProcess simulator(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--exit-after", "120"});
    const auto port = simulator.tcpPort();
    if (!port) {
        state.SkipWithError("marlune-sim did not start");
        return;
    }
    TcpCom com;
    std::string address = "127.0.0.1:" + std::to_string(*port);
    address.resize(marlune::link::kAddressBufferSize);
    const auto handle = com.open(2, 0, address.data());
    if (handle <= 0) {
        state.SkipWithError("no connection to marlune-sim");
        return;
    }
    std::vector<char> reply(marlune::link::kReceiveBufferSize);
    for (auto _ : state) {
        if (com.sendRecv(2, handle, "???\r", reply.data()) == 0) {
            state.SkipWithError("an exchange failed");
            break;
        }
        benchmark::DoNotOptimize(reply.data());
    }
    com.close(2, handle);
}
BENCHMARK(BM_TcpStatusExchange)->Unit(benchmark::kMicrosecond)->Repetitions(9)->ReportAggregatesOnly(true);

} // namespace

BENCHMARK_MAIN();
