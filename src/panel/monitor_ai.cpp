#include "panel/monitor_ai.h"

#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"

namespace marlune::panel {

MonitorAI::MonitorAI()
    : forms::Form("MonitorAI", "Monitor AI"), Label1(add<forms::Label>("Label1", "AI Channel 1")),
      Label2(add<forms::Label>("Label2", "AI Channel 2")), AI1(add<forms::TextBox>("AI1", "0")),
      AI2(add<forms::TextBox>("AI2", "0")), AITimer(add<forms::Timer>("AITimer", 300)),
      CloseBtn(add<forms::Button>("CloseBtn", "Close"))
{
    AI1.locked = true;
    AI2.locked = true;
    CloseBtn.isCancel = true;
    AITimer.onTick = [this] { readInputs(); };
    CloseBtn.onClick = [this] { unload(); };
}

void MonitorAI::readInputs()
{
    link::ControllerLink& link = link::Link();
    if (!link.connected)
        return;
    for (forms::TextBox* box : {&AI1, &AI2}) {
        std::string command = box->name();
        std::string reply;
        if (!link::SendCommand(command, reply)) {
            // Cleared before the message, so that a later tick cannot report the loss again.
            link.connected = false;
            forms::MsgBox("Error communication!");
            return;
        }
        box->setText(reply);
    }
}

} // namespace marlune::panel
