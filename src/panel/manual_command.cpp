#include "panel/main_control.h"

#include "forms/platform.h"
#include "forms/text.h"
#include "link/command_exchange.h"

namespace marlune::panel {

void MainControl::manualCommandKey(int keyCode)
{
    if (keyCode != forms::kKeyEnter)
        return;
    std::string command = ManualCmd.text();
    // The words are looked for anywhere in the text, so longer words that hold them count too.
    if (forms::ContainsUpper(command, "EXIT")) {
        unload();
        return;
    }
    if (forms::ContainsUpper(command, "OPEN")) {
        forms::MsgBox("Cannot open program");
        ManualCmd.setText({});
        return;
    }
    if (forms::ContainsUpper(command, "LIST")) {
        forms::MsgBox("Cannot list program");
        ManualCmd.setText({});
        return;
    }
    std::string reply;
    link::SendCommand(command, reply);
    ManualCmd.setText({});
    setFocus(ManualCmd);
    ReplyBox.setText(reply);
}

} // namespace marlune::panel
