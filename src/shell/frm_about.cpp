#include "shell/frm_about.h"

#include <string>

#include "forms/platform.h"

namespace marlune::shell {

FrmAbout::FrmAbout()
    : forms::Form("frmAbout", "About MarluneDesk"), picIcon(add<forms::Picture>("picIcon", "InputOn")),
      lblTitle(add<forms::Label>("lblTitle", "")), lblVersion(add<forms::Label>("lblVersion", "")),
      Label1(add<forms::Label>("Label1", "TOLVEX TECHNOLOGY")), cmdOK(add<forms::Button>("cmdOK", "OK"))
{
    cmdOK.isDefault = true;
    cmdOK.isCancel = true;
    cmdOK.onClick = [this] { unload(); };
}

void FrmAbout::formLoad()
{
    // The numbers are the project's version in the build.
    lblVersion.setCaption("Version " + std::to_string(MARLUNE_VERSION_MAJOR) + "."
                          + std::to_string(MARLUNE_VERSION_MINOR) + "." + std::to_string(MARLUNE_VERSION_PATCH));
    lblTitle.setCaption(forms::kApplicationTitle);
}

} // namespace marlune::shell
