#include "panel/main_control.h"

#include "forms/number.h"
#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "panel/monitor_ai.h"

namespace marlune::panel {

void MainControl::connectIo()
{
    for (std::size_t n = 0; n < DIO.size(); ++n)
        DIO[n]->onClick = [this, n] { digitalPointClicked(static_cast<int>(n) + 1); };
    for (std::size_t a = 0; a < 4; ++a) {
        // Enable lamps act on the mouse going down (any button), clear lamps on the click.
        EO[a]->onMouseDown = [this, a](int) { outputLampUsed(*EO[a], EO[a]->name()); };
        CO[a]->onClick = [this, a] { outputLampUsed(*CO[a], CO[a]->name()); };
    }
    MEClear.onClick = [this] {
        for (std::size_t a = 0; a < 4; ++a) {
            if (Sel[a]->value() == 1)
                send(std::string("MECLEAR") + kAxisLetters[a]);
        }
    };
    AnalogInputs.onClick = [this] { analogInputsClicked(); };
}

void MainControl::digitalPointClicked(int point)
{
    if (!link::Link().connected)
        return;
    // The lamp is the state: only an output can be switched, and it turns over.
    const std::string& picture = DIO[static_cast<std::size_t>(point - 1)]->picture();
    if (picture == kOutputOn)
        send("DIO" + std::to_string(point) + "=0");
    else if (picture == kOutputOff)
        send("DIO" + std::to_string(point) + "=1");
}

void MainControl::outputLampUsed(forms::Picture& lamp, const std::string& name)
{
    if (!link::Link().connected)
        return;
    send(name + (lamp.picture() == kOutputOn ? "=0" : "=1"));
}

void MainControl::analogInputsClicked()
{
    pollSuspended = true;
    forms::ShowModal(monitorAI_, this);
    pollSuspended = false;
}

void MainControl::updateDIOConfig()
{
    dioConfig = 0;
    if (!link::Link().connected)
        return;
    std::string command = "I12";
    std::string reply;
    // A failed exchange, or a reply that is no number, leaves every point an input.
    if (link::SendCommand(command, reply)) {
        if (const auto value = forms::ToInt32(reply))
            dioConfig = *value;
    }
}

} // namespace marlune::panel
