// The pre-processing of one download: a definition list of 1,000 names read and checked, and
// four programs of 10,000 lines each prepared with it. The budget is 250 ms a download.
#include "project/definitions.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace {

using namespace marlune::project;

// Names that share long beginnings, so that most positions of a line start some name.
std::string DefinitionList()
{
    std::string list;
    for (int i = 0; i < 1000; ++i)
        list += "AXISPOS" + std::to_string(i) + " = " + (i % 2 == 0 ? "V" : "") + std::to_string(i + 1) + "\r\n";
    return list;
}

std::string Program(int program)
{
    std::string text;
    for (int line = 0; line < 10000; ++line) {
        const int name = (line * 37 + program) % 1000;
        text += "\tV" + std::to_string(line % 248 + 1) + "=AXISPOS" + std::to_string(name) + "+AXISPOS"
                + std::to_string(999 - name) + " ;AXISPOS" + std::to_string(name) + " reached\r\n";
    }
    return text;
}

void PrepareFourPrograms(benchmark::State& state)
{
    const std::string list = DefinitionList();
    std::array<std::string, 4> programs;
    for (int n = 1; n <= 4; ++n)
        programs[static_cast<std::size_t>(n - 1)] = Program(n);
    for (auto _ : state) {
        DefinitionTable table;
        if (!ParseDefinitions(list, table).empty() || !ValidateDefinitions(table).empty())
            state.SkipWithError("the definition list was refused");
        for (const std::string& program : programs)
            benchmark::DoNotOptimize(PrepareProgram(program, table));
    }
}
BENCHMARK(PrepareFourPrograms)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

} // namespace

BENCHMARK_MAIN();
