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
        return {std::move(library.com), ComSource::VendorLibrary, std::move(description), {}};
    }
    auto simulator = std::make_unique<SimulatorCom>(options.simulatorClock, options.timeouts.reply);
    std::string eeprom = "its EEPROM lost at exit";
    std::string problem;
    if (options.simulatorEeprom) {
        const std::string file = options.simulatorEeprom->string();
        std::string why;
        if (simulator->keepEepromIn(*options.simulatorEeprom, why)) {
            eeprom = "its EEPROM kept in " + file;
        } else {
            problem = "The simulated controller's EEPROM file " + file + " cannot be used: " + why
                      + ". The controller starts with a blank EEPROM and leaves the file as it is.";
        }
    }
    auto builtIn = std::make_unique<KindRouterCom>(std::move(simulator), std::make_unique<TcpCom>(options.timeouts),
                                                   std::make_unique<SerialCom>(options.timeouts));
    return {std::move(builtIn), ComSource::BuiltIn,
            "built-in links: simulated controller (USB 1.1, " + eeprom
                    + "), TCP (Ethernet), serial port (USB 2.0 VCP); no maker's library (" + library.reason + ")",
            std::move(problem)};
}

std::unique_ptr<link::MarluneCom> CreateMarluneCom(const ComOptions& options) { return ChooseMarluneCom(options).com; }

} // namespace marlune::marlunecom
