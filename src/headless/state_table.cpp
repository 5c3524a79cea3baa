#include "headless/state_table.h"

#include "headless/control_path.h"
#include "headless/scenario_failure.h"
#include "link/controller_link.h"
#include "panel/main_control.h"
#include "project/projects.h"
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

project::ProjectState& Project(shell::Program* program)
{
    if (!program)
        Fail("the program has not been started (start)");
    return program->projects().state;
}

template <int N>
std::string SectionText(shell::Program* program)
{
    return Project(program).section(N);
}

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
        {"ProjectState.projectOpen", [](shell::Program* p) { return Bool(Project(p).projectOpen); }},
        {"ProjectState.projectChanged", [](shell::Program* p) { return Bool(Project(p).projectChanged); }},
        {"ProjectState.projectFile", [](shell::Program* p) { return Project(p).projectFile; }},
        {"ProjectState.programWindowMask",
         [](shell::Program* p) { return std::to_string(Project(p).programWindowMask); }},
        {"ProjectState.windowClosing", [](shell::Program* p) { return Bool(Project(p).windowClosing); }},
        {"ProjectState.silentUpload", [](shell::Program* p) { return Bool(Project(p).silentUpload); }},
        {"ProjectState.sectionText[1]", &SectionText<1>},
        {"ProjectState.sectionText[2]", &SectionText<2>},
        {"ProjectState.sectionText[3]", &SectionText<3>},
        {"ProjectState.sectionText[4]", &SectionText<4>},
        {"ProjectState.sectionText[5]", &SectionText<5>},
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
