#pragma once

#include <cstdint>
#include <string>

namespace marlune::link {

inline constexpr const char* kLinkSettingsFile = "marlunecom.ini";
inline constexpr const char* kDefaultIpAddress = "192.168.1.250";
inline constexpr const char* kDefaultComPort = "COM1";

// The three fields that marlunecom.ini keeps.
struct LinkSettings {
    std::int16_t linkKind = 1;
    std::string ipAddress;
    std::string comPort;
};

// Reads marlunecom.ini from the working directory into the three fields (defaults when the
// file does not exist; a line that cannot be read or converted leaves its field alone), then
// derives linkAddress. Always true.
bool LoadLinkSettings(std::int16_t& linkKind, std::string& ipAddress, std::string& comPort);

// The address a kind 1 open is handed: empty for kind 1, the IP address for 2, else the COM port.
std::string LinkAddressFor(std::int16_t linkKind, const std::string& ipAddress, const std::string& comPort);

// Replaces marlunecom.ini with the three lines. When the file cannot be written the operator
// is told which file and why, the settings stay in memory, and the result is false.
bool SaveLinkSettings(std::int16_t& linkKind, std::string& ipAddress, std::string& comPort);

} // namespace marlune::link
