#include <iostream>
#include <string_view>

#include "headless/scenario_runner.h"

// marlune-scenario [--fault-sweep] FILE...: runs the scenarios of the files (a directory:
// its *.scn files), or sweeps them with one failed exchange at a time, and exits 0 only when
// none failed.
int main(int argc, char** argv)
{
    const bool sweep = argc > 1 && std::string_view(argv[1]) == "--fault-sweep";
    const int first = sweep ? 2 : 1;
    if (argc <= first) {
        std::cerr << "usage: marlune-scenario [--fault-sweep] FILE-OR-DIRECTORY...\n";
        return 2;
    }
    marlune::headless::ScenarioRunner runner(std::cout);
    runner.setFaultSweep(sweep);
    for (int i = first; i < argc; ++i)
        runner.runPath(argv[i]);
    runner.printTotals();
    return runner.totals().failed == 0 ? 0 : 1;
}
