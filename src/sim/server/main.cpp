// marlune-sim: one simulated controller served on TCP and a pseudo-terminal.
#include "server_options.h"
#include "sim_server.h"

#include <csignal>
#include <iostream>

namespace {

volatile std::sig_atomic_t stopRequested = 0;

extern "C" void RequestStop(int) { stopRequested = 1; }

} // namespace

int main(int argc, char** argv)
{
    using namespace marlune::sim;
    ServerOptions options;
    std::string error;
    if (!ParseServerOptions(std::vector<std::string>(argv + 1, argv + argc), options, error)) {
        std::cerr << "marlune-sim: " << error << '\n' << ServerUsage();
        return 2;
    }
    if (options.help) {
        std::cout << ServerUsage();
        return 0;
    }
    struct sigaction action {};
    action.sa_handler = RequestStop;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    SimServer server(options);
    if (!server.start(std::cout, error)) {
        std::cerr << "marlune-sim: " << error << '\n';
        return 1;
    }
    server.run(stopRequested);
    return 0;
}
