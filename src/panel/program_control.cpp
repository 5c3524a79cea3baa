#include "panel/main_control.h"

#include "forms/platform.h"
#include "link/command_exchange.h"

namespace marlune::panel {

void MainControl::connectPrograms()
{
    RunProg.onClick = [this] { programCommand("RUN"); };
    StopProg.onClick = [this] { programCommand("QUIT"); };
    PauseProg.onClick = [this] { programCommand("PAUSE"); };
    ContProg.onClick = [this] { programCommand("CONTINUE"); };
    PEClear.onClick = [this] { programCommand("PECLEAR"); };
    GetErrMsg.onClick = [this] { showErrorMessage(); };
}

std::string MainControl::getSelectedProgram() const
{
    for (std::size_t p = 0; p < 4; ++p) {
        if (SelProg[p]->value())
            return std::to_string(p + 1);
    }
    return {};
}

void MainControl::programCommand(const std::string& word)
{
    if (SelProgAll.value()) {
        for (int p = 1; p <= 4; ++p)
            send(word + std::to_string(p));
    } else {
        send(word + getSelectedProgram());
    }
}

void MainControl::showErrorMessage()
{
    if (SelProgAll.value()) {
        forms::MsgBox("Select program first!");
        return;
    }
    std::string command = "PEMSG" + getSelectedProgram();
    std::string reply;
    link::SendCommand(command, reply);
    forms::MsgBox(reply, forms::MessageButtons::OK, forms::MessageIcon::None, "Program Error Message");
}

} // namespace marlune::panel
