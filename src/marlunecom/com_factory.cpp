#include "marlunecom/com_factory.h"

#include "marlunecom/kind_router_com.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/tcp_com.h"
#include "marlunecom/vendor_library_com.h"

namespace marlune::marlunecom {

ComChoice ChooseMarluneCom(const ComOptions& options)
{
    auto library = VendorLibraryCom::load(options.vendorLibrary.value_or(VendorLibraryCom::defaultLocation()));
    if (library.com) {
        auto description = "controller maker's library " + library.com->fileName() + " for every link kind";
        return {std::move(library.com), ComSource::VendorLibrary, std::move(description)};
    }
    auto builtIn = std::make_unique<KindRouterCom>(
            std::make_unique<SimulatorCom>(options.simulatorClock, options.timeouts.reply),
            std::make_unique<TcpCom>(options.timeouts), std::make_unique<SerialCom>(options.timeouts));
    return {std::move(builtIn), ComSource::BuiltIn,
            "built-in links: simulated controller (USB 1.1), TCP (Ethernet), serial port (USB 2.0 VCP); "
            "no maker's library ("
                    + library.reason + ")"};
}

std::unique_ptr<link::MarluneCom> CreateMarluneCom(const ComOptions& options) { return ChooseMarluneCom(options).com; }

} // namespace marlune::marlunecom
