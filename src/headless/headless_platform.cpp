#include "headless/headless_platform.h"

#include <algorithm>

#include "forms/control.h"
#include "forms/files.h"
#include "forms/form.h"
#include "headless/quoted_text.h"

namespace marlune::headless {

namespace {

// Takes the innermost modal showing off the list however runModal is left.
class ModalShowing final {
public:
    ModalShowing(std::vector<forms::Form*>& modal, forms::Form& form) : modal_(modal) { modal_.push_back(&form); }
    ~ModalShowing() { modal_.pop_back(); }
    ModalShowing(const ModalShowing&) = delete;
    ModalShowing& operator=(const ModalShowing&) = delete;

private:
    std::vector<forms::Form*>& modal_;
};

} // namespace

forms::MessageAnswer HeadlessPlatform::messageBox(const forms::MessageRequest& request)
{
    using forms::MessageAnswer;
    messages_.push_back({request, MessageAnswer::OK});
    MessageAnswer answer = MessageAnswer::OK;
    if (request.buttons == forms::MessageButtons::OK) {
        if (!answers_.empty() && answers_.front() == MessageAnswer::OK)
            answers_.pop_front();
    } else {
        if (answers_.empty())
            throw UnansweredDialog("a question came up with no answer queued: " + Quoted(request.text));
        answer = answers_.front();
        if (answer != MessageAnswer::Yes && answer != MessageAnswer::No)
            throw UnansweredDialog("the queued answer " + AnswerName(answer) + " is no button of the question "
                                   + Quoted(request.text) + " (Yes or No)");
        answers_.pop_front();
        messages_.back().answer = answer;
    }
    if (messageDwell_ > 0)
        advance(clock_.now() + messageDwell_);
    return answer;
}

void HeadlessPlatform::runModal(forms::Form& form, forms::Form*)
{
    if (!driver_)
        throw UnansweredDialog("the form " + form.name() + " was shown modally, but nothing drives it");
    ModalShowing showing(modal_, form);
    driver_->runUntilUnloaded(form);
}

void HeadlessPlatform::showModeless(forms::Form& form, forms::Form* parentFrame)
{
    if (!parentFrame) {
        frame_ = &form;
        return;
    }
    if (!isChild(form))
        children_.push_back(&form);
    active_ = &form;
}

void HeadlessPlatform::formUnloaded(forms::Form& form)
{
    owners_.erase(&form);
    std::erase(children_, &form);
    if (active_ == &form)
        active_ = children_.empty() ? nullptr : children_.back();
}

forms::Form* HeadlessPlatform::owner(const forms::Form& form) const
{
    const auto it = owners_.find(&form);
    return it == owners_.end() ? nullptr : it->second;
}

void HeadlessPlatform::arrange(forms::Arrangement arrangement) { lastArrangement_ = arrangement; }

void HeadlessPlatform::activate(forms::Form& child)
{
    if (isChild(child))
        active_ = &child;
}

bool HeadlessPlatform::isChild(const forms::Form& form) const
{
    return std::find(children_.begin(), children_.end(), &form) != children_.end();
}

void HeadlessPlatform::timerChanged(forms::Timer& timer)
{
    if (timer.running())
        clock_.schedule(timer, clock_.now() + timer.interval());
    else
        clock_.cancel(timer);
}

bool HeadlessPlatform::advance(std::int64_t until, const std::function<bool()>& stop)
{
    forms::Form* innermost = modal_.empty() ? nullptr : modal_.back();
    const auto stopped = [&] { return (innermost && !innermost->loaded()) || (stop && stop()); };
    if (stopped())
        return false;
    while (auto due = clock_.takeNextDue(until)) {
        clock_.moveTo(due->time);
        forms::Timer& timer = *due->timer;
        // Armed again before the tick, so that a tick that falls due while the handler still
        // runs (behind a modal form or a message box) arrives, and the runtime drops it.
        if (timer.running())
            clock_.schedule(timer, due->time + timer.interval());
        timer.tick();
        if (stopped())
            return false;
    }
    clock_.moveTo(until);
    return true;
}

forms::FileDialogResult HeadlessPlatform::fileDialog(const forms::FileDialogRequest& request)
{
    fileDialogs_.push_back(request);
    if (fileResults_.empty())
        throw UnansweredDialog("a file dialog " + Quoted(request.title)
                               + " came up with no dialog-file or dialog-cancel queued");
    forms::FileDialogResult result = std::move(fileResults_.front());
    fileResults_.pop_front();
    return result;
}

forms::PrintDialogResult HeadlessPlatform::printDialog(const std::string& title)
{
    if (printResults_.empty())
        throw UnansweredDialog("a print dialog " + Quoted(title)
                               + " came up with no dialog-print or dialog-print-cancel queued");
    forms::PrintDialogResult result = std::move(printResults_.front());
    printResults_.pop_front();
    return result;
}

bool HeadlessPlatform::printText(const std::string&, const std::string& text)
{
    printed_.push_back(text);
    return true;
}

void HeadlessPlatform::saveSetting(const std::string&, const std::string& section, const std::string& key,
                                   const std::string& value)
{
    settings_[{section, key}] = value;
}

std::optional<std::string> HeadlessPlatform::readSetting(const std::string&, const std::string& section,
                                                         const std::string& key)
{
    return setting(section, key);
}

std::optional<std::string> HeadlessPlatform::setting(const std::string& section, const std::string& key) const
{
    const auto it = settings_.find({section, key});
    if (it == settings_.end())
        return std::nullopt;
    return it->second;
}

std::optional<std::string> HeadlessPlatform::showHelp(const std::string& file, int command)
{
    lastHelp_ = HelpCall{file, command};
    return std::nullopt;
}

std::optional<std::string> HeadlessPlatform::savePicture(const forms::Control& control, const std::string& path)
{
    std::string error =
            forms::WriteFileAtomically(path, "picture of " + control.form().name() + "." + control.name() + "\n");
    if (error.empty())
        return std::nullopt;
    return error;
}

std::string AnswerName(forms::MessageAnswer answer)
{
    switch (answer) {
    case forms::MessageAnswer::OK: return "OK";
    case forms::MessageAnswer::Yes: return "Yes";
    case forms::MessageAnswer::No: return "No";
    case forms::MessageAnswer::Cancel: return "Cancel";
    }
    return "?";
}

std::string ButtonsName(forms::MessageButtons buttons)
{
    return buttons == forms::MessageButtons::YesNo ? "YesNo" : "OK";
}

std::string IconName(forms::MessageIcon icon)
{
    switch (icon) {
    case forms::MessageIcon::None: return "none";
    case forms::MessageIcon::Question: return "question";
    case forms::MessageIcon::Information: return "information";
    case forms::MessageIcon::Exclamation: return "exclamation";
    case forms::MessageIcon::Critical: return "critical";
    }
    return "?";
}

} // namespace marlune::headless
