#include <iostream>

#include "headless/scenario_runner.h"

// marlune-scenario FILE...: runs the scenarios of the files (a directory: its *.scn files)
// and exits 0 only when none failed.
int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: marlune-scenario FILE-OR-DIRECTORY...\n";
        return 2;
    }
    marlune::headless::ScenarioRunner runner(std::cout);
    for (int i = 1; i < argc; ++i)
        runner.runPath(argv[i]);
    runner.printTotals();
    return runner.totals().failed == 0 ? 0 : 1;
}
