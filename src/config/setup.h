#pragma once

#include "config/config_dialog.h"

namespace marlune::config {

// The controller's hardware configuration: the words I1, I2, I12 and I13, one check box per bit,
// and the controller's IP address as the controller writes it.
class Setup final : public ConfigDialog {
public:
    Setup();

    forms::TextBox& IPAddress;
    forms::Button& OK;
    forms::Button& Cancel;

    // The write of OK, with one open attempt for every link kind; whether the dialog may close.
    WriteEnd downloadSetup();

protected:
    void formLoad() override;
};

} // namespace marlune::config
