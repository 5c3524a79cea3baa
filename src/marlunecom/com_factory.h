#pragma once

#include "link/marlune_com.h"
#include "marlunecom/link_timeouts.h"
#include "marlunecom/simulator_com.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace marlune::marlunecom {

struct ComOptions {
    SimulatorCom::Clock simulatorClock;                   // empty: the steady clock
    std::optional<std::string> vendorLibrary;             // a path; empty: $MARLUNE_COM_LIBRARY or libMarluneCom.so
    LinkTimeouts timeouts;                                // of the built-in links
    std::optional<std::filesystem::path> simulatorEeprom; // where the simulated controller keeps its EEPROM
};

enum class ComSource {
    BuiltIn,       // simulated controller, TCP and serial port by kind
    VendorLibrary, // the controller maker's library for every kind
};

struct ComChoice {
    std::unique_ptr<link::MarluneCom> com;
    ComSource source = ComSource::BuiltIn;
    std::string description; // one line for the About box or a log: what was chosen and why
    std::string problem;     // what the operator must be told at start; empty when all is well
};

// The controller maker's library when it loads and has its three functions; otherwise the
// built-in links, routed by kind (1 simulated controller, 2 TCP, 3 serial port), with the
// library's reason for not being used in the description.
ComChoice ChooseMarluneCom(const ComOptions& options);

std::unique_ptr<link::MarluneCom> CreateMarluneCom(const ComOptions& options);

} // namespace marlune::marlunecom
