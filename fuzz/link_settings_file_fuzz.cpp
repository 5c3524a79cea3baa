// marlunecom.ini, the link settings: any bytes, read as at start.
#include "panel_fixture.h"

#include "link/link_settings.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) { return marlune::fuzz::EnterWorkDirectory("link-settings"); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace marlune;
    fuzz::WriteInput(link::kLinkSettingsFile, data, size);
    const fuzz::PanelFixture fixture;
    std::int16_t kind = 0;
    std::string ipAddress;
    std::string comPort;
    link::LoadLinkSettings(kind, ipAddress, comPort);
    link::LinkAddressFor(kind, ipAddress, comPort);
    return 0;
}
