#include "marlunecom/link_option.h"

#include "marlunecom/com_port_name.h"
#include "marlunecom/tcp_address.h"

namespace marlune::marlunecom {

LinkOption ParseLinkOption(std::string_view text)
{
    link::LinkSettings settings{1, link::kDefaultIpAddress, link::kDefaultComPort};
    if (text == "sim")
        return {settings, {}};
    if (text.starts_with("tcp:")) {
        const std::string_view address = text.substr(4);
        if (!ParseTcpAddress(address, kDefaultTcpPort))
            return {std::nullopt,
                    "\"" + std::string(address) + "\" is no host, or host:port with a port from 1 to 65535"};
        settings.linkKind = 2;
        settings.ipAddress = address;
        return {settings, {}};
    }
    if (text.starts_with("serial:")) {
        const std::string_view port = text.substr(7);
        // Without MARLUNE_COM_DIR's folder, so that only the name's form is judged here.
        if (!ComPortDevice(port, nullptr))
            return {std::nullopt, "\"" + std::string(port) + "\" is no serial port: COM1, COM2, ... or a /dev path"};
        settings.linkKind = 3;
        settings.comPort = port;
        return {settings, {}};
    }
    return {std::nullopt, "\"" + std::string(text) + "\" names no link: sim, tcp:HOST[:PORT] or serial:COMn"};
}

} // namespace marlune::marlunecom
