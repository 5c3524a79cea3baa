#include "panel/main_control.h"

#include "forms/number.h"
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
    Abort.onClick = [this] {
        failedCommand_.clear();
        sendChecked("ABORT");
        reportFailedCommand("the controller may not have stopped.");
    };
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

bool MainControl::downloadSpdAccel()
{
    if (!link::Link().connected)
        return true;
    for (const std::string& command : {"HSPD" + HSPD.text(), "LSPD" + LSPD.text(), "ACCEL" + ACCEL.text()}) {
        if (!sendChecked(command))
            return false;
    }
    return sendChecked("ACCEL");
}

bool MainControl::updateSpdAccel()
{
    if (!link::Link().connected)
        return true;
    // A box takes only a number: after a failed exchange or a reply that is no number it keeps
    // what it had, so that no failure text reaches the panel's file as a speed.
    for (forms::TextBox* box : {&HSPD, &LSPD, &ACCEL}) {
        std::string reply;
        if (!exchangeChecked(box->name(), reply))
            return false;
        if (const auto value = forms::ToInt32(reply))
            box->setText(std::to_string(*value));
    }
    return true;
}

bool MainControl::speedPrelude() { return downloadSpdAccel() && updateSpdAccel(); }

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
    failedCommand_.clear();
    if (!speedPrelude()) {
        reportFailedCommand("the move was not sent.");
        return;
    }
    std::string command;
    std::int16_t axisMask = 0;
    buildMoveCommand(command, direction, axisMask);
    if (axisMask <= 0)
        return;
    if (idleTest && axesAreIdle(axisMask) != 1) {
        forms::MsgBox("Axis not Idle!");
        return;
    }
    if (!sendChecked(mode))
        reportFailedCommand("the move was not sent.");
    else if (!sendChecked(command))
        reportFailedCommand("the controller may still carry out the move.");
}

void MainControl::homeButton(const char* sign)
{
    failedCommand_.clear();
    if (!speedPrelude()) {
        reportFailedCommand("the homing was not sent.");
        return;
    }
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
        if (Sel[a]->value() == 1 && !sendChecked(std::string(mode) + kAxisLetters[a] + sign)) {
            reportFailedCommand("the controller may still carry out that homing; no other axis was sent.");
            return;
        }
    }
}

// Every selected axis is told to stop, whatever failed before: a stop that can go out must.
void MainControl::stopButton()
{
    speedPrelude();
    failedCommand_.clear();
    const std::string stop = RampStop.value() != 0 ? "RSTOP" : "STOP";
    for (std::size_t a = 0; a < 4; ++a) {
        if (Sel[a]->value() == 1)
            sendChecked(stop + kAxisLetters[a]);
    }
    reportFailedCommand("the controller may not have stopped.");
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
