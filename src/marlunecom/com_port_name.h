#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marlune::marlunecom {

// The environment variable that names a folder standing in for the COM ports.
inline constexpr const char* kComDirVariable = "MARLUNE_COM_DIR";

// Which device a serial link address names on Linux:
// - an address that begins with "/" is a device path as it stands;
// - "COMn" (n from 1, letters in either case) is `$MARLUNE_COM_DIR/COMn` when that variable is
//   set and not empty (a folder of links to devices, e.g. for a simulated controller), and
//   otherwise /dev/ttyACM<n-1>, where a USB virtual COM port appears: COM1 is /dev/ttyACM0;
// - anything else names no device.
// `comDir` is the value of MARLUNE_COM_DIR (nullptr when unset).
std::optional<std::string> ComPortDevice(std::string_view address, const char* comDir);

// The same with MARLUNE_COM_DIR read from the environment.
std::optional<std::string> ComPortDevice(std::string_view address);

} // namespace marlune::marlunecom
