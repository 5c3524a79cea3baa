// Saving and opening a project of four programs of 5,000 lines each, through a real file.
#include "project/project_file.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

using namespace marlune::project;

SectionTexts LargeProject()
{
    SectionTexts sections;
    for (int program = 1; program <= 4; ++program) {
        for (int line = 0; line < 5000; ++line)
            sections[SectionIndex(program)] += "V" + std::to_string(line % 248 + 1) + "=V1+" + std::to_string(line)
                                               + " ; step " + std::to_string(line) + "\r\n";
    }
    sections[SectionIndex(DefinitionSection)] = "MAXPOS=5000\r\nSPEED=1200\r\n";
    return sections;
}

const std::string& FileName()
{
    static const std::string name = (std::filesystem::temp_directory_path() / "marlune-project-bench.prj").string();
    return name;
}

void SaveProject(benchmark::State& state)
{
    const SectionTexts sections = LargeProject();
    for (auto _ : state) {
        if (const std::string why = WriteProjectFile(FileName(), sections, 3, 16); !why.empty())
            state.SkipWithError(why.c_str());
    }
}
BENCHMARK(SaveProject)->Unit(benchmark::kMillisecond)->Repetitions(5);

void OpenProject(benchmark::State& state)
{
    WriteProjectFile(FileName(), LargeProject(), 3, 16);
    ProjectState project;
    std::int32_t display = 0;
    std::int32_t control = 0;
    for (auto _ : state) {
        if (const std::string why = ReadProjectFile(FileName(), project, display, control); !why.empty())
            state.SkipWithError(why.c_str());
    }
    std::filesystem::remove(FileName());
}
BENCHMARK(OpenProject)->Unit(benchmark::kMillisecond)->Repetitions(5);

} // namespace

BENCHMARK_MAIN();
