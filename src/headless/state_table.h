#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marlune::shell {
class Program;
}

namespace marlune::headless {

// A named piece of the program's global state as text (numbers in decimal, booleans as true
// and false), for `expect state`; nothing for a name the table does not hold. `program` is
// null before start; a member of a form that has not been made fails the scenario.
std::optional<std::string> ReadState(std::string_view name, shell::Program* program);

} // namespace marlune::headless
