#include "link/controller_variables.h"

#include <string>

#include "forms/number.h"
#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"

namespace marlune::link {

std::int32_t GetVar(std::int16_t number)
{
    ControllerLink& link = Link();
    if (!link.connected)
        return 0;
    std::string command = "I" + std::to_string(number);
    std::string reply;
    const bool sent = SendCommand(command, reply);
    const auto value = sent ? forms::ToInt32(reply) : std::nullopt;
    if (!value) {
        link.connected = false;
        forms::MsgBox("Error Get Var:" + command);
        return 0;
    }
    return *value;
}

std::int32_t SetVar(std::int16_t number, std::int32_t value)
{
    std::string command = "I" + std::to_string(number) + "=" + std::to_string(value);
    std::string reply;
    if (!SendCommand(command, reply)) {
        forms::MsgBox("Error Set Var:" + command);
        return 0;
    }
    return 1;
}

} // namespace marlune::link
