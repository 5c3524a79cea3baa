#pragma once

#include <array>

#include "config/config_dialog.h"
#include "config/joystick_map.h"

namespace marlune::config {

// The joystick control of the four axes: the plain numbers I14 to I21 and I23 to I46, and the
// packed word I22 with the enable, soft limit and direction bits and each axis's input.
class SetupJoystick final : public ConfigDialog {
public:
    SetupJoystick();

    // Per axis X, Y, Z, U.
    std::array<forms::OptionButton*, kAxisCount> JoyInputEnc, JoyInputAI1, JoyInputAI2, JoyInputVar, JoyInputDIO;
    std::array<forms::TextBox*, kAxisCount> JoyInputEncSel;
    forms::Button& OK;
    forms::Button& Cancel;
    forms::Button& Update;

    // The write of Update and OK; whether the dialog may close.
    WriteEnd downloadJoystick();

protected:
    void formLoad() override;

private:
    forms::TextBox& numberBox(const JoystickColumn& column, int axis) const;
    void showInput(int axis, int selection);
    int chosenInput(int axis) const;
    // The options of an axis after its encoder option, for the selections 4 to 7.
    std::array<forms::OptionButton*, 4> otherInputs(int axis) const;
};

} // namespace marlune::config
