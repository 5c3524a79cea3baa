#include "link/link_settings.h"

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

bool LoadLinkSettings(std::int16_t& linkKind, std::string& ipAddress, std::string& comPort)
{
    if (forms::FileExists(kLinkSettingsFile)) {
        if (const auto bytes = forms::ReadFileBytes(kLinkSettingsFile)) {
            const std::vector<std::string> lines = SplitLines(*bytes);
            if (!lines.empty()) {
                if (const auto kind = forms::ToInt16(lines[0]))
                    linkKind = *kind;
            }
            if (lines.size() > 1)
                ipAddress = lines[1];
            if (lines.size() > 2)
                comPort = lines[2];
        }
    } else {
        linkKind = 1;
        ipAddress = kDefaultIpAddress;
        comPort = kDefaultComPort;
    }
    Link().linkAddress = LinkAddressFor(linkKind, ipAddress, comPort);
    return true;
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
