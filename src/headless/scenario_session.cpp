#include "headless/scenario_session.h"

#include <filesystem>

#include "forms/control.h"
#include "forms/files.h"
#include "forms/form.h"
#include "headless/control_path.h"
#include "headless/quoted_text.h"
#include "headless/scenario_failure.h"
#include "link/controller_link.h"
#include "link/exchange_log.h"
#include "shell/program.h"

#ifdef MARLUNE_HEADLESS_SIMULATOR
#include "marlunecom/simulator_com.h"
#endif

// The statements a scenario drives the program with. Besides those of the scenario format:
//   message-dwell DURATION   while a message box is open the virtual clock runs on by this
//                            much, firing the timers that fall due (0, the default, answers
//                            at once); it proves that ticks behind a message box behave.
//   key ... Backspace        the key code 8, beside Enter, Tab and Escape.

namespace marlune::headless {

namespace {

// The statements ran out inside a modal showing: the scenario is over, and passed.
struct ScriptEnded {};

constexpr std::int64_t kDefaultCloseLimit = 60000;

std::int64_t RequireDuration(const Word& word)
{
    const auto ms = ParseDuration(word.text);
    if (!ms)
        Fail("not a duration (500ms, 2s): " + Quoted(word.text));
    return *ms;
}

std::int64_t RequireNumber(const Word& word, std::int64_t min, std::int64_t max)
{
    const auto value = ParseInteger(word.text);
    if (!value || *value < min || *value > max)
        Fail("expected a whole number from " + std::to_string(min) + " to " + std::to_string(max) + ", not "
             + Quoted(word.text));
    return *value;
}

bool Wildcard(const Word& word) { return !word.quoted && word.text == "*"; }

// A name for `file` and `remove` stays inside the scenario's working directory.
const std::string& RequireLocalName(const std::string& name)
{
    const std::filesystem::path path(name);
    bool climbs = false;
    for (const auto& part : path)
        climbs = climbs || part == "..";
    if (name.empty() || path.is_absolute() || climbs)
        Fail("a file name must lie inside the working directory: " + Quoted(name));
    return name;
}

forms::TextBox& RequireTextBox(forms::Control& control)
{
    auto* box = dynamic_cast<forms::TextBox*>(&control);
    if (!box)
        Fail(control.form().name() + "." + control.name() + " is a " + std::string(forms::KindName(control.kind()))
             + ", not a text box");
    return *box;
}

void PressToolButton(forms::ToolBar& toolBar, const std::string& key)
{
    if (toolBar.pressButton(key))
        return;
    for (const forms::ToolButton& button : toolBar.buttons()) {
        if (!button.key.empty() && button.key == key)
            Fail("the tool bar button " + Quoted(key) + " of " + toolBar.name() + " is disabled");
    }
    Fail(toolBar.name() + " has no button with the key " + Quoted(key) + " (keys compare exactly)");
}

} // namespace

// ---- The statement table

const StatementKind<ScenarioSession> ScenarioSession::kKinds[] = {
        {"controller", 1, 1, &ScenarioSession::controller},
        {"open-result", 1, kMany, &ScenarioSession::openResult},
        {"reply", 2, 2, &ScenarioSession::reply},
        {"reply-once", 2, 2, &ScenarioSession::replyOnce},
        {"fail", 1, 2, &ScenarioSession::fail},
        {"file", 2, 2, &ScenarioSession::file},
        {"remove", 1, 1, &ScenarioSession::remove},
        {"clipboard", 1, 1, &ScenarioSession::clipboard},
        {"start", 0, 0, &ScenarioSession::start},
        {"menu", 1, 1, &ScenarioSession::menu},
        {"toolbar", 1, 1, &ScenarioSession::toolbar},
        {"click", 1, 2, &ScenarioSession::click},
        {"dblclick", 1, 1, &ScenarioSession::dblclick},
        {"mousedown", 1, 1, &ScenarioSession::mousedown},
        {"set", 2, 2, &ScenarioSession::set},
        {"type", 2, 2, &ScenarioSession::type},
        {"key", 2, 2, &ScenarioSession::key},
        {"select", 3, 3, &ScenarioSession::select},
        {"focus", 1, 1, &ScenarioSession::focus},
        {"close", 1, 1, &ScenarioSession::close},
        {"wait", 1, 1, &ScenarioSession::wait},
        {"wait-closed", 1, 2, &ScenarioSession::waitClosed},
        {"answer", 1, kMany, &ScenarioSession::answer},
        {"dialog-file", 1, 1, &ScenarioSession::dialogFile},
        {"dialog-cancel", 0, 0, &ScenarioSession::dialogCancel},
        {"dialog-print", 0, 0, &ScenarioSession::dialogPrint},
        {"dialog-print-cancel", 0, 0, &ScenarioSession::dialogPrintCancel},
        {"message-dwell", 1, 1, &ScenarioSession::messageDwell},
        {"expect", 0, kMany, &ScenarioSession::expect},
};

std::optional<std::string> ScenarioSession::argumentError(const Statement& statement)
{
    if (statement.isRepeat()) {
        for (const Statement& inner : statement.body) {
            if (auto error = argumentError(inner))
                return error;
        }
        return std::nullopt;
    }
    const StatementKind<ScenarioSession>* kind = FindStatementKind(kKinds, statement.words[0]);
    if (!kind)
        return "unknown statement " + Quoted(statement.name());
    if (kind->name == "expect")
        return Expectations::argumentError(statement);
    return WordCountError(statement.name(), kind->minArgs, kind->maxArgs, statement.words.size() - 1);
}

// ---- Running

ScenarioSession::ScenarioSession() : expectations_(platform_, controller_), waiting_(platform_)
{
    forms::SetPlatform(&platform_);
    link::SetCom(&controller_);
    // The communication log times the exchanges by the virtual clock, from midnight on.
    link::Log() = link::ExchangeLog{};
    link::Log().setClock([this] { return platform_.now() * 1000; }, 0);
    platform_.setModalDriver(this);
    program_ = std::make_unique<shell::Program>();
}

ScenarioSession::~ScenarioSession()
{
    program_.reset();
    link::Log() = link::ExchangeLog{};
    link::SetCom(nullptr);
    forms::SetPlatform(nullptr);
}

ScenarioOutcome ScenarioSession::run(const Scenario& scenario)
{
    for (const Statement& statement : scenario.statements) {
        if (auto error = argumentError(statement))
            return {false, statement.line, *error};
    }
    cursor_.emplace(scenario.statements);
    try {
        try {
            runStatements(nullptr);
        } catch (const ScriptEnded&) {
        }
        checkEveryExchangeLogged();
    } catch (const ScenarioFailure& failure) {
        return {false, failure.line() ? failure.line() : currentLine_, failure.what()};
    } catch (const UnansweredDialog& dialog) {
        return {false, currentLine_, dialog.what()};
    } catch (const std::exception& error) {
        return {false, currentLine_, std::string("the program failed: ") + error.what()};
    }
    return {};
}

void ScenarioSession::runUntilUnloaded(forms::Form& form) { runStatements(&form); }

void ScenarioSession::checkEveryExchangeLogged() const
{
    // Every window's exchanges reach the controller through the one exchange that logs them.
    const link::ExchangeLog& log = link::Log();
    if (log.oldest() != 1)
        return; // some left the log
    int made = 0;
    for (std::uint64_t n = 1; n <= log.newest(); ++n) {
        const link::ExchangeFailure failure = log.at(n).failure;
        made += failure != link::ExchangeFailure::TooLong && failure != link::ExchangeFailure::Refused;
    }
    if (made != exchanges())
        throw ScenarioFailure(std::to_string(exchanges()) + " exchanges reached the controller, " + std::to_string(made)
                              + " of them the communication log");
}

void ScenarioSession::runStatements(forms::Form* modal)
{
    for (;;) {
        if (modal && !modal->loaded())
            return;
        finishWait();
        if (modal && !modal->loaded())
            return;
        const Statement* statement = cursor_->next();
        if (!statement) {
            if (modal)
                throw ScriptEnded{};
            return;
        }
        execute(*statement);
    }
}

void ScenarioSession::execute(const Statement& statement)
{
    // The line is put back only on a normal return, so that a failure deep inside a nested
    // showing blames the statement that was running there.
    const int outerLine = currentLine_;
    currentLine_ = statement.line;
    spanning([&] { (this->*FindStatementKind(kKinds, statement.words[0])->run)(statement); });
    currentLine_ = outerLine;
}

template <class Action>
void ScenarioSession::spanning(Action action)
{
    const int exchangesBefore = exchanges();
    const int messagesBefore = static_cast<int>(platform_.messages().size());
    innerMessages_.push_back(0);
    const auto record = [&] {
        const int shown = static_cast<int>(platform_.messages().size()) - messagesBefore;
        spans_.push_back({exchangesBefore, exchanges(), shown - innerMessages_.back()});
        innerMessages_.pop_back();
        if (!innerMessages_.empty())
            innerMessages_.back() += shown;
    };
    try {
        action();
    } catch (...) {
        record();
        throw;
    }
    record();
}

forms::Form* ScenarioSession::innermostModal() const
{
    const auto& modal = platform_.modalForms();
    return modal.empty() ? nullptr : modal.back();
}

shell::Program* ScenarioSession::startedProgram() const { return started_ ? program_.get() : nullptr; }

void ScenarioSession::finishWait()
{
    // Failures of the ticks during a wait are the wait's.
    const int outerLine = currentLine_;
    currentLine_ = waiting_.line().value_or(currentLine_);
    waiting_.finish();
    currentLine_ = outerLine;
}

void ScenarioSession::requireInput(forms::Form& form) const
{
    if (!form.loaded())
        Fail(form.name() + " is not shown");
    const forms::Form* modal = innermostModal();
    if (modal && modal != &form && platform_.owner(form) != modal)
        Fail(form.name() + " takes no input while " + modal->name() + " is shown modally");
}

forms::Control& ScenarioSession::operable(const std::string& path)
{
    forms::Control& control = RequireControl(startedProgram(), path);
    requireInput(control.form());
    if (!control.enabled())
        Fail(path + " is disabled and cannot be used");
    if (!control.visible())
        Fail(path + " is not visible and cannot be used");
    return control;
}

// ---- The scripted controller

void ScenarioSession::controller(const Statement& statement)
{
    if (statement.words[1].text != "sim")
        Fail("controller takes sim, not " + Quoted(statement.words[1].text));
    if (started_)
        Fail("controller sim must come before start");
    if (scripted_)
        Fail("controller sim cannot follow scripted replies, failures or open results");
#ifdef MARLUNE_HEADLESS_SIMULATOR
    controller_.forwardTo(std::make_unique<marlunecom::SimulatorCom>([this] { return platform_.now() * 1000; }));
#else
    Fail("the simulated controller is not built in yet");
#endif
}

void ScenarioSession::requireScript(const Statement& statement)
{
    if (controller_.forwarding())
        Fail(statement.name() + " cannot be used with controller sim");
    scripted_ = true;
}

void ScenarioSession::openResult(const Statement& statement)
{
    requireScript(statement);
    std::vector<std::int32_t> handles;
    for (std::size_t i = 1; i < statement.words.size(); ++i)
        handles.push_back(static_cast<std::int32_t>(RequireNumber(statement.words[i], INT32_MIN, INT32_MAX)));
    controller_.queueOpenResults(handles);
}

void ScenarioSession::reply(const Statement& statement)
{
    requireScript(statement);
    if (Wildcard(statement.words[1]))
        controller_.setDefaultReply(statement.words[2].text);
    else
        controller_.setReply(statement.words[1].text, statement.words[2].text);
}

void ScenarioSession::replyOnce(const Statement& statement)
{
    requireScript(statement);
    if (Wildcard(statement.words[1]))
        Fail("reply-once needs a command; use reply * for every request");
    controller_.addReplyOnce(statement.words[1].text, statement.words[2].text);
}

void ScenarioSession::fail(const Statement& statement)
{
    requireScript(statement);
    const bool any = Wildcard(statement.words[1]);
    if (any && statement.words.size() < 3)
        Fail("fail * needs a count");
    const int count = statement.words.size() > 2 ? static_cast<int>(RequireNumber(statement.words[2], 1, kMany)) : 1;
    if (any)
        controller_.failAny(count);
    else
        controller_.failNext(statement.words[1].text, count);
}

// ---- Files and the clipboard

void ScenarioSession::file(const Statement& statement)
{
    const std::string& name = RequireLocalName(statement.words[1].text);
    if (const std::string error = forms::WriteFileAtomically(name, statement.words[2].text); !error.empty())
        Fail("cannot write " + Quoted(name) + ": " + error);
}

void ScenarioSession::remove(const Statement& statement)
{
    const std::string& name = RequireLocalName(statement.words[1].text);
    std::error_code error;
    if (!std::filesystem::remove(name, error))
        Fail("cannot remove " + Quoted(name) + ": " + (error ? error.message() : "there is no such file"));
}

void ScenarioSession::clipboard(const Statement& statement) { platform_.setClipboardText(statement.words[1].text); }

// ---- Driving the program

void ScenarioSession::start(const Statement&)
{
    if (started_)
        Fail("the program has already been started");
    started_ = true;
    program_->Main();
}

void ScenarioSession::menu(const Statement& statement)
{
    forms::Form& frame = RequireForm(startedProgram(), "frmMain");
    requireInput(frame);
    const std::string& name = statement.words[1].text;
    auto* item = frame.find<forms::MenuItem>(name);
    if (!item)
        Fail("frmMain has no menu item " + name);
    if (item->isSeparator())
        Fail(name + " is a separator");
    // The operator reaches an item through its parents, which must all be usable.
    for (forms::MenuItem* on = item; on; on = frame.find<forms::MenuItem>(on->parent())) {
        if (!on->enabled() || !on->visible())
            Fail("the menu item " + on->name() + " is " + (on->enabled() ? "not visible" : "disabled"));
    }
    item->operatorClick();
}

void ScenarioSession::toolbar(const Statement& statement)
{
    forms::Form& frame = RequireForm(startedProgram(), "frmMain");
    requireInput(frame);
    auto* toolBar = frame.find<forms::ToolBar>("tbToolBar");
    if (!toolBar)
        Fail("frmMain has no tool bar tbToolBar");
    if (!toolBar->enabled() || !toolBar->visible())
        Fail("the tool bar tbToolBar cannot be used");
    PressToolButton(*toolBar, statement.words[1].text);
}

void ScenarioSession::click(const Statement& statement)
{
    forms::Control& control = operable(statement.words[1].text);
    if (auto* toolBar = dynamic_cast<forms::ToolBar*>(&control)) {
        if (statement.words.size() < 3)
            Fail("click on a tool bar needs the key of a button");
        PressToolButton(*toolBar, statement.words[2].text);
        return;
    }
    if (statement.words.size() > 2)
        Fail("only a tool bar takes a key after click");
    control.operatorClick();
}

void ScenarioSession::dblclick(const Statement& statement) { operable(statement.words[1].text).operatorDoubleClick(); }

void ScenarioSession::mousedown(const Statement& statement) { operable(statement.words[1].text).operatorMouseDown(1); }

void ScenarioSession::set(const Statement& statement)
{
    forms::Control& control = operable(statement.words[1].text);
    const std::string& value = statement.words[2].text;
    if (auto* box = dynamic_cast<forms::TextBox*>(&control)) {
        box->operatorSetText(value);
    } else if (auto* check = dynamic_cast<forms::CheckBox*>(&control)) {
        if (value != "0" && value != "1")
            Fail("a check box is set to 0 or 1, not " + Quoted(value));
        check->setValue(value == "1" ? 1 : 0);
    } else if (auto* option = dynamic_cast<forms::OptionButton*>(&control)) {
        if (value != "1")
            Fail("an option button is set to 1 (chosen); it is cleared by choosing another");
        option->setValue(true);
    } else {
        Fail("set works on text boxes, check boxes and option buttons, not on the "
             + std::string(forms::KindName(control.kind())) + " " + statement.words[1].text);
    }
}

void ScenarioSession::type(const Statement& statement)
{
    RequireTextBox(operable(statement.words[1].text)).operatorType(statement.words[2].text);
}

void ScenarioSession::key(const Statement& statement)
{
    forms::TextBox& box = RequireTextBox(operable(statement.words[1].text));
    const std::string& name = statement.words[2].text;
    int code = 0;
    if (name == "Enter")
        code = forms::kKeyEnter;
    else if (name == "Tab")
        code = forms::kKeyTab;
    else if (name == "Escape")
        code = forms::kKeyEscape;
    else if (name == "Backspace")
        code = forms::kKeyBackspace;
    else
        code = static_cast<int>(RequireNumber(statement.words[2], 1, 255));
    box.operatorKey(code);
}

void ScenarioSession::select(const Statement& statement)
{
    forms::TextBox& box = RequireTextBox(operable(statement.words[1].text));
    box.setSelStart(static_cast<int>(RequireNumber(statement.words[2], 0, kMany)));
    box.setSelLength(static_cast<int>(RequireNumber(statement.words[3], 0, kMany)));
}

void ScenarioSession::focus(const Statement& statement)
{
    forms::Control& control = operable(statement.words[1].text);
    forms::Form& form = control.form();
    if (platform_.isChild(form))
        platform_.activate(form);
    form.setFocus(control);
}

void ScenarioSession::close(const Statement& statement)
{
    forms::Form& form = RequireForm(startedProgram(), statement.words[1].text);
    requireInput(form);
    form.unload();
}

void ScenarioSession::wait(const Statement& statement)
{
    waiting_.begin(RequireDuration(statement.words[1]), nullptr, {}, statement.line);
}

void ScenarioSession::waitClosed(const Statement& statement)
{
    const std::int64_t limit = statement.words.size() > 2 ? RequireDuration(statement.words[2]) : kDefaultCloseLimit;
    const std::string& name = statement.words[1].text;
    forms::Form* form = FindForm(startedProgram(), name);
    if (!form || !form->loaded())
        return;
    waiting_.begin(limit, form, name + " is still shown after " + std::to_string(limit) + "ms", statement.line);
}

// ---- Answers

void ScenarioSession::answer(const Statement& statement)
{
    for (std::size_t i = 1; i < statement.words.size(); ++i) {
        const std::string& name = statement.words[i].text;
        if (name == "Yes")
            platform_.queueAnswer(forms::MessageAnswer::Yes);
        else if (name == "No")
            platform_.queueAnswer(forms::MessageAnswer::No);
        else if (name == "OK")
            platform_.queueAnswer(forms::MessageAnswer::OK);
        else if (name == "Cancel")
            platform_.queueAnswer(forms::MessageAnswer::Cancel);
        else
            Fail("an answer is Yes, No, OK or Cancel, not " + Quoted(name));
    }
}

void ScenarioSession::dialogFile(const Statement& statement)
{
    platform_.queueFileDialog({forms::FileDialogResult::Outcome::Chosen, statement.words[1].text, {}});
}

void ScenarioSession::dialogCancel(const Statement&)
{
    platform_.queueFileDialog({forms::FileDialogResult::Outcome::Cancelled, {}, {}});
}

void ScenarioSession::dialogPrint(const Statement&)
{
    platform_.queuePrintDialog({forms::PrintDialogResult::Outcome::Chosen, {}});
}

void ScenarioSession::dialogPrintCancel(const Statement&)
{
    platform_.queuePrintDialog({forms::PrintDialogResult::Outcome::Cancelled, {}});
}

void ScenarioSession::messageDwell(const Statement& statement)
{
    platform_.setMessageDwell(RequireDuration(statement.words[1]));
}

void ScenarioSession::expect(const Statement& statement)
{
    if (checkExpectations_)
        expectations_.check(statement, startedProgram());
}

void ScenarioSession::sweepWithFault(int exchange)
{
    checkExpectations_ = false;
    controller_.failExchangeNumber(exchange);
}

std::vector<std::string> ScenarioSession::endAndFindLeftovers()
{
    if (started_)
        spanning([&] { EndProgram(*program_, platform_); });
    return FindLeftovers(controller_.calls(), directory_.path());
}

std::vector<std::string> ScenarioSession::messages() const
{
    std::vector<std::string> texts;
    for (const ShownMessage& message : platform_.messages())
        texts.push_back(message.request.text);
    return texts;
}

} // namespace marlune::headless
