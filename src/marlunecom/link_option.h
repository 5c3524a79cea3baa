#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "link/link_settings.h"

namespace marlune::marlunecom {

// A link named on the command line: "sim" for the built-in simulated controller,
// "tcp:HOST[:PORT]" for Ethernet, "serial:COMn" (or "serial:/dev/...") for a serial port. The
// fields that the other kinds do not use keep their defaults.
struct LinkOption {
    std::optional<link::LinkSettings> settings;
    std::string error; // why the text names no link
};

LinkOption ParseLinkOption(std::string_view text);

} // namespace marlune::marlunecom
