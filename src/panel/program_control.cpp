#include "panel/main_control.h"

#include "forms/platform.h"
#include "link/command_exchange.h"
#include "tools/program_viewer.h"

namespace marlune::panel {

void MainControl::connectPrograms()
{
    RunProg.onClick = [this] { programCommand("RUN"); };
    StopProg.onClick = [this] { programCommand("QUIT"); };
    PauseProg.onClick = [this] { programCommand("PAUSE"); };
    ContProg.onClick = [this] { programCommand("CONTINUE"); };
    PEClear.onClick = [this] { programCommand("PECLEAR"); };
    GetErrMsg.onClick = [this] { showErrorMessage(); };
    ViewProg.onClick = [this] { viewProgram(); };
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

// The viewer uses the panel's link, so the poll stands still until it has closed.
void MainControl::viewProgram()
{
    pollSuspended = true;
    const std::string selected = SelProgAll.value() ? std::string() : getSelectedProgram();
    if (selected.empty()) {
        forms::MsgBox("Select program first!");
        pollSuspended = false;
        return;
    }
    std::int16_t number = static_cast<std::int16_t>(selected[0] - '0');
    programViewer_.myProgNumber = number;
    programViewer_.uploadProg(number);
    forms::ShowModal(programViewer_, this);
    pollSuspended = false;
}

} // namespace marlune::panel
