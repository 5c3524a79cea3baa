// The program interpreter: any lines stored in a program slot and run, with the clock moved
// on step by step while the program may move axes, wait and loop.
#include "controller.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    marlune::sim::Controller controller;
    controller.execute("OPENPROG1");
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        controller.execute(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    controller.execute("CLOSE");
    controller.execute("RUN1");
    for (std::int64_t step = 1; step <= 40; ++step) {
        controller.advanceTo(step * 50'000);
        controller.execute("???");
    }
    controller.advanceTo(3'000'000); // a statement takes a millisecond: at most 3000 more
    controller.execute("???");
    return 0;
}
