#pragma once

#include <array>

#include "config/config_dialog.h"

namespace marlune::config {

// The semi-closed-loop position control: the correction speeds, the ratio and range words I3 to
// I10, the encoder multiplication I11, and the encoder's share of I2 (enable bits and attempts).
class SetupEncoderControl final : public ConfigDialog {
public:
    SetupEncoderControl();

    forms::TextBox& EHSPD;
    forms::TextBox& ELSPD;
    forms::TextBox& EACCEL;
    forms::TextBox& AttempNumber;
    // Per axis X, Y, Z, U: the factors 1, 2 and 4.
    std::array<std::array<forms::OptionButton*, 3>, kAxisCount> Mult;
    forms::Button& OK;
    forms::Button& Cancel;

    // The write of OK; whether the dialog may close.
    WriteEnd downloadEncoderSetup();

protected:
    void formLoad() override;

private:
    std::array<forms::TextBox*, 3> settings() const { return {&EHSPD, &ELSPD, &EACCEL}; }
};

} // namespace marlune::config
