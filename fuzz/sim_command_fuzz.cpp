// The simulated controller's command parser and everything a command sets going: the input is
// a conversation, one command per CR, with the clock moved on between commands.
#include "controller.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    marlune::sim::Controller controller;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    std::int64_t now = 0;
    while (!rest.empty()) {
        const auto end = rest.find('\r');
        const auto reply = controller.execute(rest.substr(0, end));
        if (reply && reply->find('\x04') != std::string::npos)
            std::abort(); // a reply never holds its own terminator
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        now += 250'000;
        controller.advanceTo(now);
    }
    return 0;
}
