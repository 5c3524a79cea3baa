#include "headless/expectations.h"

#include <string_view>

#include "forms/files.h"
#include "forms/form.h"
#include "headless/control_path.h"
#include "headless/headless_platform.h"
#include "headless/quoted_text.h"
#include "headless/scenario_failure.h"
#include "headless/scenario_lexer.h"
#include "headless/scripted_controller.h"
#include "headless/state_table.h"
#include "shell/program.h"

namespace marlune::headless {

namespace {

std::string Describe(const ComCall& call)
{
    switch (call.operation) {
    case ComCall::Operation::Open:
        return "open " + std::to_string(call.kind) + " " + std::to_string(call.mode) + " " + Quoted(call.bytes);
    case ComCall::Operation::Close: return "close " + std::to_string(call.kind) + " " + std::to_string(call.handle);
    case ComCall::Operation::Exchange: return "sent " + Quoted(call.bytes);
    }
    return {};
}

std::string QuotedList(const std::vector<std::string>& texts)
{
    std::string out;
    for (const std::string& text : texts)
        out += (out.empty() ? "" : " ") + Quoted(text);
    return out;
}

std::int64_t RequireInteger(const Word& word)
{
    const auto value = ParseInteger(word.text);
    if (!value)
        Fail("not a whole number: " + Quoted(word.text));
    return *value;
}

const std::string& Arg(const Statement& statement, std::size_t i) { return statement.words[i + 2].text; }

} // namespace

const StatementKind<Expectations> Expectations::kKinds[] = {
        {"message", 1, 7, &Expectations::message},
        {"no-message", 0, 0, &Expectations::noMessage},
        {"sent", 1, kMany, &Expectations::sent},
        {"sent-raw", 1, 1, &Expectations::sentRaw},
        {"nothing-sent", 0, 0, &Expectations::nothingSent},
        {"open", 3, 3, &Expectations::openOrClose},
        {"close", 2, 2, &Expectations::openOrClose},
        {"link-idle", 0, 0, &Expectations::linkIdle},
        {"shown", 1, 1, &Expectations::shown},
        {"not-shown", 1, 1, &Expectations::shown},
        {"state", 2, 2, &Expectations::state},
        {"file", 2, 2, &Expectations::file},
        {"no-file", 1, 1, &Expectations::file},
        {"setting", 3, 3, &Expectations::setting},
        {"no-setting", 2, 2, &Expectations::setting},
        {"printed", 1, kMany, &Expectations::printed},
        {"help", 2, 2, &Expectations::help},
        {"arrangement", 1, 1, &Expectations::arrangement},
        {"active", 1, 1, &Expectations::active},
};

std::optional<std::string> Expectations::argumentError(const Statement& statement)
{
    if (statement.words.size() < 2)
        return "expect needs what to check";
    const std::size_t args = statement.words.size() - 2;
    const StatementKind<Expectations>* kind = FindStatementKind(kKinds, statement.words[1]);
    if (!kind) {
        if (args != 2)
            return "expect Form.Control PROPERTY VALUE (or an unknown expectation " + statement.words[1].text + ")";
        return std::nullopt;
    }
    if (auto error = WordCountError("expect " + std::string(kind->name), kind->minArgs, kind->maxArgs, args))
        return error;
    if (kind->name == "message" && args % 2 == 0)
        return "expect message TEXT is followed by pairs: title T, buttons OK|YesNo, icon NAME";
    return std::nullopt;
}

void Expectations::check(const Statement& statement, shell::Program* program)
{
    program_ = program;
    const StatementKind<Expectations>* kind = FindStatementKind(kKinds, statement.words[1]);
    (this->*(kind ? kind->run : &Expectations::property))(statement);
}

void Expectations::message(const Statement& statement)
{
    std::string expected = Quoted(Arg(statement, 0));
    std::vector<std::pair<std::string, std::string>> options;
    const std::size_t args = statement.words.size() - 2;
    for (std::size_t i = 1; i + 1 < args; i += 2) {
        const std::string& option = Arg(statement, i);
        if (option != "title" && option != "buttons" && option != "icon")
            Fail("expect message knows the options title, buttons and icon, not " + option);
        const std::string& value = Arg(statement, i + 1);
        options.emplace_back(option, value);
        expected += " " + option + " " + (option == "title" ? Quoted(value) : value);
    }
    const auto& messages = platform_.messages();
    if (messagesChecked_ >= messages.size())
        FailMismatch("expect message", expected, "no message box");
    const forms::MessageRequest& shown = messages[messagesChecked_++].request;
    std::string found = Quoted(shown.text);
    bool same = shown.text == Arg(statement, 0);
    for (const auto& [option, value] : options) {
        const std::string actual = option == "title"     ? shown.title
                                   : option == "buttons" ? ButtonsName(shown.buttons)
                                                         : IconName(shown.icon);
        found += " " + option + " " + (option == "title" ? Quoted(actual) : actual);
        same = same && actual == value;
    }
    if (!same)
        FailMismatch("expect message", expected, found);
}

void Expectations::noMessage(const Statement&)
{
    const auto& messages = platform_.messages();
    if (messagesChecked_ >= messages.size())
        return;
    std::vector<std::string> texts;
    for (std::size_t i = messagesChecked_; i < messages.size(); ++i)
        texts.push_back(messages[i].request.text);
    FailMismatch("expect no-message", "no message box", "message boxes " + QuotedList(texts));
}

std::size_t Expectations::nextExchange() const
{
    const auto& calls = controller_.calls();
    std::size_t i = exchangeCursor_;
    while (i < calls.size() && calls[i].operation != ComCall::Operation::Exchange)
        ++i;
    return i;
}

std::size_t Expectations::nextOpenOrClose() const
{
    const auto& calls = controller_.calls();
    std::size_t i = openCloseCursor_;
    while (i < calls.size() && calls[i].operation == ComCall::Operation::Exchange)
        ++i;
    return i;
}

void Expectations::sent(const Statement& statement)
{
    const auto& calls = controller_.calls();
    for (std::size_t a = 0; a + 2 < statement.words.size(); ++a) {
        const std::string& expected = Arg(statement, a);
        const std::size_t i = nextExchange();
        if (i >= calls.size())
            FailMismatch("expect sent", Quoted(expected), "nothing sent");
        exchangeCursor_ = i + 1;
        const std::string found = RequestKey(calls[i].bytes);
        if (found != expected)
            FailMismatch("expect sent", Quoted(expected), Quoted(found));
    }
}

void Expectations::sentRaw(const Statement& statement)
{
    const auto& calls = controller_.calls();
    const std::string& expected = Arg(statement, 0);
    const std::size_t i = nextExchange();
    if (i >= calls.size())
        FailMismatch("expect sent-raw", Quoted(expected), "nothing sent");
    exchangeCursor_ = i + 1;
    if (calls[i].bytes != expected)
        FailMismatch("expect sent-raw", Quoted(expected), Quoted(calls[i].bytes));
}

void Expectations::nothingSent(const Statement&)
{
    if (nextExchange() < controller_.calls().size())
        FailMismatch("expect nothing-sent", "nothing sent", uncheckedCalls(true, false));
}

void Expectations::openOrClose(const Statement& statement)
{
    const bool open = statement.words[1].text == "open";
    ComCall expected{open ? ComCall::Operation::Open : ComCall::Operation::Close,
                     static_cast<std::int32_t>(RequireInteger(statement.words[2])),
                     0,
                     0,
                     {},
                     0};
    if (open) {
        expected.mode = static_cast<std::int32_t>(RequireInteger(statement.words[3]));
        expected.bytes = Arg(statement, 2);
    } else {
        expected.handle = static_cast<std::int32_t>(RequireInteger(statement.words[3]));
    }
    const auto& calls = controller_.calls();
    const std::size_t i = nextOpenOrClose();
    const std::string what = "expect " + statement.words[1].text;
    if (i >= calls.size())
        FailMismatch(what, Describe(expected), "no open or close");
    openCloseCursor_ = i + 1;
    const ComCall& found = calls[i];
    if (Describe(found) != Describe(expected))
        FailMismatch(what, Describe(expected), Describe(found));
}

std::string Expectations::uncheckedCalls(bool exchanges, bool opensAndCloses) const
{
    const auto& calls = controller_.calls();
    std::string out;
    for (std::size_t i = std::min(exchangeCursor_, openCloseCursor_); i < calls.size(); ++i) {
        const bool exchange = calls[i].operation == ComCall::Operation::Exchange;
        if ((exchange && exchanges && i >= exchangeCursor_) || (!exchange && opensAndCloses && i >= openCloseCursor_))
            out += (out.empty() ? "" : ", ") + Describe(calls[i]);
    }
    return out;
}

void Expectations::linkIdle(const Statement&)
{
    if (nextExchange() < controller_.calls().size() || nextOpenOrClose() < controller_.calls().size())
        FailMismatch("expect link-idle", "no unchecked call of the library", uncheckedCalls(true, true));
}

void Expectations::property(const Statement& statement)
{
    const std::string& target = statement.words[1].text;
    const std::string& name = Arg(statement, 0);
    const std::string& expected = Arg(statement, 1);
    std::optional<std::string> found;
    if (target.find('.') != std::string::npos) {
        found = RequireControl(program_, target).property(name);
        if (!found)
            Fail(target + " has no property " + name);
    } else if (name == "loaded") {
        const forms::Form* form = FindForm(program_, target);
        found = form && form->loaded() ? "true" : "false";
    } else if (name == "caption") {
        found = RequireForm(program_, target).caption();
    } else {
        Fail("a form has the properties caption and loaded, not " + name);
    }
    if (*found != expected)
        FailMismatch("expect " + target + " " + name, Quoted(expected), Quoted(*found));
}

void Expectations::shown(const Statement& statement)
{
    const bool expected = statement.words[1].text == "shown";
    const std::string& name = Arg(statement, 0);
    const forms::Form* form = FindForm(program_, name);
    const bool loaded = form && form->loaded();
    if (loaded != expected)
        FailMismatch("expect " + statement.words[1].text + " " + name, expected ? "shown" : "not shown",
                     loaded ? "shown" : "not shown");
}

void Expectations::state(const Statement& statement)
{
    const std::string& name = Arg(statement, 0);
    const auto found = ReadState(name, program_);
    if (!found)
        Fail("unknown state " + name);
    if (*found != Arg(statement, 1))
        FailMismatch("expect state " + name, Quoted(Arg(statement, 1)), Quoted(*found));
}

void Expectations::file(const Statement& statement)
{
    const bool expected = statement.words[1].text == "file";
    const std::string& name = Arg(statement, 0);
    const auto bytes = forms::ReadFileBytes(name);
    if (expected) {
        if (!bytes)
            FailMismatch("expect file " + name, Quoted(Arg(statement, 1)), "no file");
        if (*bytes != Arg(statement, 1))
            FailMismatch("expect file " + name, Quoted(Arg(statement, 1)), Quoted(*bytes));
    } else if (bytes || forms::FileExists(name)) {
        FailMismatch("expect no-file " + name, "no file", bytes ? Quoted(*bytes) : "a file that cannot be read");
    }
}

void Expectations::setting(const Statement& statement)
{
    const bool expected = statement.words[1].text == "setting";
    const std::string& section = Arg(statement, 0);
    const std::string& key = Arg(statement, 1);
    const auto found = platform_.setting(section, key);
    const std::string what = "expect " + statement.words[1].text + " " + section + " " + key;
    if (expected && found != Arg(statement, 2))
        FailMismatch(what, Quoted(Arg(statement, 2)), found ? Quoted(*found) : "no setting");
    if (!expected && found)
        FailMismatch(what, "no setting", Quoted(*found));
}

void Expectations::printed(const Statement& statement)
{
    const auto& jobs = platform_.printed();
    for (std::size_t a = 0; a + 2 < statement.words.size(); ++a) {
        const std::string& expected = Arg(statement, a);
        if (printedChecked_ >= jobs.size())
            FailMismatch("expect printed", Quoted(expected), "nothing printed");
        const std::string& found = jobs[printedChecked_++];
        if (found != expected)
            FailMismatch("expect printed", Quoted(expected), Quoted(found));
    }
}

void Expectations::help(const Statement& statement)
{
    const std::string expected = Quoted(Arg(statement, 0)) + " " + std::to_string(RequireInteger(statement.words[3]));
    const auto& call = platform_.lastHelp();
    const std::string found =
            call ? Quoted(call->file) + " " + std::to_string(call->command) : "no call of the help viewer";
    if (found != expected)
        FailMismatch("expect help", expected, found);
}

void Expectations::arrangement(const Statement& statement)
{
    const std::string expected = std::to_string(RequireInteger(statement.words[2]));
    const auto& arrangement = platform_.lastArrangement();
    const std::string found = arrangement ? std::to_string(static_cast<int>(*arrangement)) : "no arrangement";
    if (found != expected)
        FailMismatch("expect arrangement", expected, found);
}

void Expectations::active(const Statement& statement)
{
    const std::string& name = Arg(statement, 0);
    const forms::Form* expected = FindForm(program_, name);
    const forms::Form* found = platform_.activeChild();
    if (!expected || found != expected)
        FailMismatch("expect active", name,
                     found ? found->name() + " (caption " + Quoted(found->caption()) + ")" : "no active child");
}

} // namespace marlune::headless
