// marlune.ini, the panel's saved targets, axis selection and program: any bytes, read when the
// panel loads and written when it unloads.
#include "panel_fixture.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) { return marlune::fuzz::EnterWorkDirectory("panel-state"); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    marlune::fuzz::WriteInput("marlune.ini", data, size);
    const marlune::fuzz::PanelFixture panel;
    panel.mainControl().load();
    panel.mainControl().unload();
    return 0;
}
