#include "panel/main_control.h"

#include "forms/platform.h"
#include "link/bit_arithmetic.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "panel/new_pos.h"

namespace marlune::panel {

void MainControl::connectMotion()
{
    ABSMove.onClick = [this] { moveButton(1, true, "ABS"); };
    DATUMMove.onClick = [this] { moveButton(0, true, "ABS"); };
    MOVEIP.onClick = [this] { moveButton(1, false, "INC"); };
    MOVEIM.onClick = [this] { moveButton(-1, false, "INC"); };
    HOMEP.onClick = [this] { homeButton("+"); };
    HOMEM.onClick = [this] { homeButton("-"); };
    Stop.onClick = [this] { stopButton(); };
    Abort.onClick = [] { send("ABORT"); };
    JoyOn.onClick = [this] {
        if (link::Link().connected)
            send(JoyOn.value() != 0 ? "JOYON" : "JOYOFF");
    };
    for (std::size_t a = 0; a < 4; ++a) {
        const std::string axis = kAxisLetters[a];
        Pos[a]->onDblClick = [this, axis] { setPositionCounter("P", axis); };
        Enc[a]->onDblClick = [this, axis] { setPositionCounter("E", axis); };
    }
}

void MainControl::downloadSpdAccel()
{
    if (!link::Link().connected)
        return;
    send("HSPD" + HSPD.text());
    send("LSPD" + LSPD.text());
    send("ACCEL" + ACCEL.text());
    send("ACCEL");
}

void MainControl::updateSpdAccel()
{
    if (!link::Link().connected)
        return;
    // The box shows whatever the reply holds, the failure text of the exchange included.
    for (forms::TextBox* box : {&HSPD, &LSPD, &ACCEL}) {
        std::string command = box->name();
        std::string reply;
        link::SendCommand(command, reply);
        box->setText(reply);
    }
}

void MainControl::speedPrelude()
{
    downloadSpdAccel();
    updateSpdAccel();
}

void MainControl::buildMoveCommand(std::string& command, std::int16_t direction, std::int16_t& axisMask) const
{
    command.clear();
    axisMask = 0;
    const std::string sign = direction < 0 ? "-" : "";
    for (std::size_t a = 0; a < 4; ++a) {
        if (Sel[a]->value() != 1)
            continue;
        command += kAxisLetters[a];
        command += direction == 0 ? std::string("0") : sign + Target[a]->text();
        axisMask = static_cast<std::int16_t>(link::BitOr(axisMask, 1 << a));
    }
}

void MainControl::moveButton(std::int16_t direction, bool idleTest, const char* mode)
{
    speedPrelude();
    std::string command;
    std::int16_t axisMask = 0;
    buildMoveCommand(command, direction, axisMask);
    if (axisMask <= 0)
        return;
    if (idleTest && axesAreIdle(axisMask) != 1) {
        forms::MsgBox("Axis not Idle!");
        return;
    }
    send(mode);
    send(command);
}

void MainControl::homeButton(const char* sign)
{
    speedPrelude();
    const char* mode = HomingModeNormal.value() ? "HOME" : HomingModeLimit.value() ? "LHOME" : "ZHOME";
    std::string unused;
    std::int16_t axisMask = 0;
    buildMoveCommand(unused, 0, axisMask);
    if (axisMask == 0)
        return;
    if (axesAreIdle(axisMask) != 1) {
        forms::MsgBox("Axis not Idle!");
        return;
    }
    for (std::size_t a = 0; a < 4; ++a) {
        if (Sel[a]->value() == 1)
            send(std::string(mode) + kAxisLetters[a] + sign);
    }
}

void MainControl::stopButton()
{
    speedPrelude();
    const std::string stop = RampStop.value() != 0 ? "RSTOP" : "STOP";
    for (std::size_t a = 0; a < 4; ++a) {
        if (Sel[a]->value() == 1)
            send(stop + kAxisLetters[a]);
    }
}

void MainControl::setPositionCounter(const std::string& kind, const std::string& axis)
{
    newPos_.load();
    newPos_.NewPosLabel.setCaption("Enter new " + axis + (kind == "P" ? " pulse pos:" : " encoder pos:"));
    forms::ShowModal(newPos_, this);
    if (newPos_.posValueOK == 1)
        send(kind + axis + "=" + std::to_string(newPos_.posValue));
}

} // namespace marlune::panel
