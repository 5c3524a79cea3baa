#pragma once

#include "command.h"

#include <string>
#include <string_view>

namespace marlune::sim {

// Reads one command in capitals, blanks removed. Returns false and says why in
// `error` when the text is no command of the controller.
bool parseCommand(std::string_view text, Command& command, std::string& error);

// Removes blanks and turns small letters into capitals, as the controller reads commands.
std::string normaliseCommand(std::string_view raw);

// The project-name frame keeps its blanks: PROJ=" then the name and a closing quote.
bool isProjectNameFrame(std::string_view raw);
std::string projectNameOf(std::string_view raw);

} // namespace marlune::sim
