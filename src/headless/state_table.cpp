#include "headless/state_table.h"

#include "headless/control_path.h"
#include "headless/scenario_failure.h"
#include "link/controller_link.h"
#include "panel/main_control.h"
#include "shell/program.h"
#include "transfer/status.h"

namespace marlune::headless {

namespace {

std::string Bool(bool b) { return b ? "true" : "false"; }

template <class F>
F& RequireMade(shell::Program* program, std::string_view name)
{
    auto* form = dynamic_cast<F*>(FindForm(program, name));
    if (!form)
        Fail(std::string(name) + " has not been made yet");
    return *form;
}

panel::MainControl& Panel(shell::Program* program) { return RequireMade<panel::MainControl>(program, "MainControl"); }

transfer::Status& Transfer(shell::Program* program) { return RequireMade<transfer::Status>(program, "Status"); }

struct StateRow {
    std::string_view name;
    std::string (*read)(shell::Program* program);
};

// The one table of named state; each subsystem adds its rows here.
constexpr StateRow kStateTable[] = {
        {"ControllerLink.linkKind", [](shell::Program*) { return std::to_string(link::Link().linkKind); }},
        {"ControllerLink.ipAddress", [](shell::Program*) { return link::Link().ipAddress; }},
        {"ControllerLink.comPort", [](shell::Program*) { return link::Link().comPort; }},
        {"ControllerLink.linkAddress", [](shell::Program*) { return link::Link().linkAddress; }},
        {"ControllerLink.connected", [](shell::Program*) { return Bool(link::Link().connected); }},
        {"ControllerLink.linkHandle", [](shell::Program*) { return std::to_string(link::Link().linkHandle); }},
        {"MainControl.pollSuspended", [](shell::Program* p) { return Bool(Panel(p).pollSuspended); }},
        {"MainControl.dioConfig", [](shell::Program* p) { return std::to_string(Panel(p).dioConfig); }},
        {"Status.operationResult", [](shell::Program* p) { return std::to_string(Transfer(p).operationResult); }},
        {"Status.programStr", [](shell::Program* p) { return Transfer(p).programStr; }},
};

} // namespace

std::optional<std::string> ReadState(std::string_view name, shell::Program* program)
{
    for (const StateRow& row : kStateTable) {
        if (row.name == name)
            return row.read(program);
    }
    return std::nullopt;
}

} // namespace marlune::headless
