#pragma once

#include "command.h"

#include <string>
#include <string_view>

namespace marlune::sim {

// Reads one command in capitals, blanks removed. Returns false and says why in
// `error` when the text is no command of the controller.
bool ParseCommand(std::string_view text, Command& command, std::string& error);

// Removes blanks and turns small letters into capitals, as the controller reads commands.
std::string NormaliseCommand(std::string_view raw);

// The project-name frame keeps its blanks: PROJ=" then the name and a closing quote.
bool IsProjectNameFrame(std::string_view raw);
std::string ProjectNameOf(std::string_view raw);

} // namespace marlune::sim
