// How long the simulated controller takes to answer one command.
#include "controller.h"

#include <benchmark/benchmark.h>

namespace {

using marlune::sim::Controller;

// A controller with something going on: an axis in motion and a program running.
Controller busyController()
{
    Controller controller;
    controller.execute("X100000");
    controller.execute("OPENPROG1");
    controller.execute("V1=0");
    controller.execute("WHILE V1<1000000");
    controller.execute("V1=V1+1");
    controller.execute("ENDWHILE");
    controller.execute("CLOSE");
    controller.execute("RUN1");
    controller.advanceTo(500'000);
    return controller;
}

void statusQuery(benchmark::State& state)
{
    Controller controller = busyController();
    for (auto _ : state)
        benchmark::DoNotOptimize(controller.execute("???"));
}
BENCHMARK(statusQuery);

void variableWrite(benchmark::State& state)
{
    Controller controller = busyController();
    for (auto _ : state)
        benchmark::DoNotOptimize(controller.execute("V12=345"));
}
BENCHMARK(variableWrite);

void speedRead(benchmark::State& state)
{
    Controller controller = busyController();
    for (auto _ : state)
        benchmark::DoNotOptimize(controller.execute("HSPD"));
}
BENCHMARK(speedRead);

} // namespace

BENCHMARK_MAIN();
