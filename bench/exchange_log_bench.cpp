// What the communication log adds to an exchange: the status query to the in-process simulated
// controller straight through the library call, and through the exchange that times and records
// it. The log is full, as after a few minutes of polling, so that each record reuses a slot.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/exchange_log.h"
#include "marlunecom/simulator_com.h"

namespace {

using namespace marlune;

struct StatusExchange {
    StatusExchange()
    {
        link::SetCom(&com);
        link::Link().linkKind = 1;
        link::Link().linkHandle = com.open(1, 1, address.data());
        std::memcpy(frame.data(), "???\r", 4);
        for (std::size_t n = 0; n < link::ExchangeLog::kCapacity; ++n)
            link::Transact(link::Link(), frame.data(), reply.data());
    }
    ~StatusExchange() { link::SetCom(nullptr); }

    // A clock that stands still: the controller has nothing to move, so every reply is the same.
    marlunecom::SimulatorCom com{[] { return std::int64_t{0}; }};
    std::array<char, link::kAddressBufferSize> address{};
    std::array<char, link::kSendBufferSize> frame{};
    std::array<char, link::kReceiveBufferSize> reply{};
};

void BM_StatusWithoutLog(benchmark::State& state)
{
    StatusExchange exchange;
    const link::ControllerLink& controller = link::Link();
    for (auto _ : state)
        benchmark::DoNotOptimize(link::Com().sendRecv(controller.linkKind, controller.linkHandle, exchange.frame.data(),
                                                      exchange.reply.data()));
}
// The shortest run beside the median: on a shared machine the other programs only ever add.
BENCHMARK(BM_StatusWithoutLog)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
});

void BM_StatusThroughTheLog(benchmark::State& state)
{
    StatusExchange exchange;
    for (auto _ : state)
        benchmark::DoNotOptimize(link::Transact(link::Link(), exchange.frame.data(), exchange.reply.data()));
}
BENCHMARK(BM_StatusThroughTheLog)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
});

} // namespace

BENCHMARK_MAIN();
