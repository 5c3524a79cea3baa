#include "project/project_link.h"

#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/open_link.h"

namespace marlune::project {

void WithLinkForClick(const std::function<void()>& exchange)
{
    if (!link::OpenLink()) {
        forms::MsgBox("Communication Open Error!");
        return;
    }
    exchange();
    link::CloseLink();
}

void SendUnread(const std::string& command)
{
    std::string text = command;
    std::string reply;
    link::SendCommand(text, reply);
}

} // namespace marlune::project
