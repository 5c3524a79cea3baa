#pragma once

#include <string_view>

namespace marlune::forms {
class Control;
class Form;
} // namespace marlune::forms
namespace marlune::shell {
class Program;
}

namespace marlune::headless {

// Forms and controls as scenarios name them: `Terminal`, `Terminal.LogWindow`. `program` is
// null while the program has not been started. Each fails the scenario with a clear message
// when the name reaches nothing.
forms::Form& RequireForm(shell::Program* program, std::string_view name);
forms::Control& RequireControl(shell::Program* program, std::string_view path);

// The form, or null when the program has not made it.
forms::Form* FindForm(shell::Program* program, std::string_view name);

} // namespace marlune::headless
