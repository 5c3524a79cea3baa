#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "headless/expectations.h"
#include "headless/fault_sweep.h"
#include "headless/headless_platform.h"
#include "headless/pending_wait.h"
#include "headless/scenario_parser.h"
#include "headless/scripted_controller.h"
#include "headless/statement_cursor.h"
#include "headless/statement_kind.h"
#include "headless/temporary_directory.h"

namespace marlune::forms {
class Control;
}
namespace marlune::shell {
class Program;
}

namespace marlune::headless {

struct ScenarioOutcome {
    bool passed = true;
    int line = 0;        // of the failing statement
    std::string message; // what was expected and what was found
};

// One scenario from a fresh start: its own working directory, settings store, clock,
// controller and program. It is the driver of every modal showing: inside one it reads the
// following statements until the form unloads.
class ScenarioSession final : public ModalDriver {
public:
    ScenarioSession();
    ~ScenarioSession() override;
    ScenarioSession(const ScenarioSession&) = delete;
    ScenarioSession& operator=(const ScenarioSession&) = delete;

    ScenarioOutcome run(const Scenario& scenario);

    // The fault sweep's run: the exchange with this number fails (0: none) and expectations
    // are not checked, since a fault may rightly change what the operator sees.
    void sweepWithFault(int exchange);
    // Afterwards: closes every window as an operator ending the program would, answering No to
    // every question, and tells what is left that must not be (links open, half-written files).
    std::vector<std::string> endAndFindLeftovers();
    int exchanges() const { return controller_.exchangeCount(); }
    const std::vector<StatementSpan>& spans() const { return spans_; }
    // The texts of the message boxes shown, in order.
    std::vector<std::string> messages() const;

    // What is wrong with the words of a statement, before anything runs.
    static std::optional<std::string> argumentError(const Statement& statement);

    void runUntilUnloaded(forms::Form& form) override;

private:
    void runStatements(forms::Form* modal);
    void execute(const Statement& statement);
    // Runs `action` and records its span, also when it fails.
    template <class Action>
    void spanning(Action action);
    void finishWait();
    // Fails the scenario when an exchange of the controller is missing from the communication log.
    void checkEveryExchangeLogged() const;
    forms::Form* innermostModal() const;
    shell::Program* startedProgram() const;

    // Statements
    void controller(const Statement& statement);
    void openResult(const Statement& statement);
    void reply(const Statement& statement);
    void replyOnce(const Statement& statement);
    void fail(const Statement& statement);
    void file(const Statement& statement);
    void remove(const Statement& statement);
    void clipboard(const Statement& statement);
    void start(const Statement& statement);
    void menu(const Statement& statement);
    void toolbar(const Statement& statement);
    void click(const Statement& statement);
    void dblclick(const Statement& statement);
    void mousedown(const Statement& statement);
    void set(const Statement& statement);
    void type(const Statement& statement);
    void key(const Statement& statement);
    void select(const Statement& statement);
    void focus(const Statement& statement);
    void close(const Statement& statement);
    void wait(const Statement& statement);
    void waitClosed(const Statement& statement);
    void answer(const Statement& statement);
    void dialogFile(const Statement& statement);
    void dialogCancel(const Statement& statement);
    void dialogPrint(const Statement& statement);
    void dialogPrintCancel(const Statement& statement);
    void messageDwell(const Statement& statement);
    void expect(const Statement& statement);

    // The control an operator acts on: its form loaded and not behind a modal form, the
    // control enabled and visible.
    forms::Control& operable(const std::string& path);
    void requireInput(forms::Form& form) const;
    void requireScript(const Statement& statement);

    TemporaryWorkingDirectory directory_; // first made, last removed
    HeadlessPlatform platform_;
    ScriptedController controller_;
    Expectations expectations_;
    std::unique_ptr<shell::Program> program_;
    bool started_ = false;
    bool scripted_ = false;
    bool checkExpectations_ = true;
    std::vector<StatementSpan> spans_;
    std::vector<int> innerMessages_; // per open span, the messages of the spans inside it
    std::optional<StatementCursor> cursor_;
    PendingWait waiting_;
    int currentLine_ = 0;

    static const StatementKind<ScenarioSession> kKinds[];
};

} // namespace marlune::headless
