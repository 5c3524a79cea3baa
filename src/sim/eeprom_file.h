#pragma once

#include "eeprom.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::sim {

// The EEPROM as text, one item a line: a first line "marlune-sim eeprom", then "writes N",
// "ip TEXT", "project TEXT", "program-set N", "I n VALUE", "V n VALUE" and "P n LINE" for
// each program line in order. A backslash, CR and LF in a text are written \\, \r and \n.
std::string FormatEeprom(const Eeprom& eeprom);
// The EEPROM that `text` holds, or nullopt with the line and what is wrong with it.
std::optional<Eeprom> ParseEeprom(std::string_view text, std::string& why);

// The file that keeps a simulated controller's EEPROM between runs.
class EepromFile final {
public:
    explicit EepromFile(std::filesystem::path path) : path_(std::move(path)) {}

    const std::filesystem::path& path() const { return path_; }

    // What the file holds; a blank EEPROM when there is no file yet; nullopt and why when
    // the file is there but cannot be read.
    std::optional<Eeprom> load(std::string& why);
    // Writes the EEPROM when it was written since the last load or save: through a temporary
    // beside the file, renamed over it, so an interrupted save leaves the earlier file. False
    // and why when that fails; the next write tries again.
    bool saveIfWritten(const Eeprom& eeprom, std::string& why);

private:
    std::filesystem::path path_;
    std::int32_t savedWrites_ = 0;
};

} // namespace marlune::sim
