#pragma once

#include "failure_modes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marlune::sim {

struct ServerOptions {
    std::string bindAddress = "127.0.0.1";
    std::uint16_t port = 0; // set from the default port unless given
    bool tcp = true;
    bool pty = false;
    std::string ptyLink;          // a symbolic link to the pseudo-terminal, if asked for
    double idleExitSeconds = 600; // no client for this long: exit
    std::optional<double> exitAfterSeconds;
    FailureModes failures;
    std::string eepromFile; // empty: the EEPROM is blank at start and lost at exit
    bool help = false;
};

// Reads the command line; false with `error` for a bad one.
bool ParseServerOptions(const std::vector<std::string>& args, ServerOptions& options, std::string& error);

std::string ServerUsage();

} // namespace marlune::sim
