#include "headless/control_path.h"

#include <string>

#include "forms/form.h"
#include "headless/scenario_failure.h"
#include "shell/program.h"

namespace marlune::headless {

forms::Form* FindForm(shell::Program* program, std::string_view name)
{
    return program ? program->findForm(name) : nullptr;
}

forms::Form& RequireForm(shell::Program* program, std::string_view name)
{
    if (!program)
        Fail("the program has not been started (start)");
    forms::Form* form = program->findForm(name);
    if (!form)
        Fail("there is no form " + std::string(name));
    return *form;
}

forms::Control& RequireControl(shell::Program* program, std::string_view path)
{
    const std::size_t dot = path.find('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == path.size())
        Fail("a control is named Form.Control, not " + std::string(path));
    forms::Form& form = RequireForm(program, path.substr(0, dot));
    forms::Control* control = form.control(path.substr(dot + 1));
    if (!control)
        Fail("the form " + form.name() + " has no control " + std::string(path.substr(dot + 1)));
    return *control;
}

} // namespace marlune::headless
