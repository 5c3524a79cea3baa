#include "link/link_settings.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <vector>

#include "forms/files.h"
#include "forms/number.h"
#include "forms/platform.h"
#include "link/controller_link.h"

namespace marlune::link {

namespace {

// Lines end at CR LF, CR or LF.
std::vector<std::string> SplitLines(const std::string& bytes)
{
    std::vector<std::string> lines;
    std::string line;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if (c == '\r' || c == '\n') {
            lines.push_back(line);
            line.clear();
            if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n')
                ++i;
        } else {
            line.push_back(c);
        }
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

} // namespace

std::string LoadLinkSettings(std::int16_t& linkKind, std::string& ipAddress, std::string& comPort)
{
    const std::string file = kLinkSettingsFile;
    std::string problem;
    std::error_code ec;
    const bool exists = std::filesystem::exists(file, ec);
    std::optional<std::string> bytes;
    if (exists) {
        errno = 0;
        bytes = forms::FileExists(file) ? forms::ReadFileBytes(file) : std::nullopt;
        if (!bytes) {
            const std::string why = std::filesystem::is_directory(file, ec) ? "it is a folder"
                                    : errno != 0                            ? std::strerror(errno)
                                                                            : "it is no ordinary file";
            problem = "The link settings file " + file + " cannot be read: " + why + ".";
        }
    }
    if (!bytes) {
        linkKind = 1;
        ipAddress = kDefaultIpAddress;
        comPort = kDefaultComPort;
        if (!problem.empty())
            problem += " The built-in simulated controller is used, not a machine.";
    } else {
        const std::vector<std::string> lines = SplitLines(*bytes);
        const std::string first = lines.empty() ? std::string() : lines[0];
        const auto kind = forms::ToInt16(first);
        if (kind)
            linkKind = *kind;
        if (lines.size() > 1)
            ipAddress = lines[1];
        if (lines.size() > 2)
            comPort = lines[2];
        if (!kind || *kind < 1 || *kind > 3) {
            problem = "The link settings file " + file + " is damaged: its first line \"" + first
                      + "\" is no link kind (1 USB 1.1, 2 Ethernet, 3 USB 2.0 VCP). No link is used until one is "
                        "chosen in the communication setup.";
        }
    }
    Link().linkAddress = LinkAddressFor(linkKind, ipAddress, comPort);
    return problem;
}

std::string DescribeLinkInUse(std::int16_t linkKind, const std::string& ipAddress, const std::string& comPort,
                              bool makersLibrary)
{
    if (linkKind < 1 || linkKind > 3)
        return "No link";
    if (makersLibrary) {
        static constexpr const char* kKinds[] = {"USB 1.1", "Ethernet ", "USB 2.0 VCP "};
        return std::string("Maker's library, ") + kKinds[linkKind - 1] + LinkAddressFor(linkKind, ipAddress, comPort);
    }
    if (linkKind == 1)
        return "Built-in simulated controller";
    return linkKind == 2 ? "TCP " + ipAddress : "Serial " + comPort;
}

std::string LinkAddressFor(std::int16_t linkKind, const std::string& ipAddress, const std::string& comPort)
{
    if (linkKind == 1)
        return {};
    return linkKind == 2 ? ipAddress : comPort;
}

bool SaveLinkSettings(std::int16_t& linkKind, std::string& ipAddress, std::string& comPort)
{
    const std::string bytes = " " + std::to_string(linkKind) + " \r\n" + ipAddress + "\r\n" + comPort + "\r\n";
    const std::string error = forms::WriteFileAtomically(kLinkSettingsFile, bytes);
    if (error.empty())
        return true;
    forms::MsgBox(std::string("The link settings could not be written to ") + kLinkSettingsFile + ": " + error
                  + ". They stay in effect until the program ends.");
    return false;
}

} // namespace marlune::link
