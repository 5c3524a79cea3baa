// The status reply as the panel reads it: split into its 28 fields and shown.
#include "panel_fixture.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const marlune::fuzz::PanelFixture panel;
    panel.mainControl().updateAllStatus(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
