#pragma once

#include <cstdint>
#include <string>

#include "link/marlune_com.h"

namespace marlune::link {

// The one record of the link, shared by the whole program from start to exit.
struct ControllerLink {
    std::int16_t linkKind = 0;   // 1 USB, 2 Ethernet, 3 virtual COM port
    std::string ipAddress;       // used for kind 2
    std::string comPort;         // used for kind 3
    std::string linkAddress;     // derived by LoadLinkSettings; handed to a kind 1 open
    bool connected = false;      // the last open succeeded and no poll or read failed since
    std::int32_t linkHandle = 0; // what the last open returned; above 0 is valid
};

ControllerLink& Link();
// Back to the state of a fresh start (no settings read, no link).
void ResetLink();

// The controller library in use; set once at start.
MarluneCom& Com();
void SetCom(MarluneCom* com);

} // namespace marlune::link
