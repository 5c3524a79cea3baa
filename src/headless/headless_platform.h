#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "forms/platform.h"
#include "headless/virtual_clock.h"

namespace marlune::headless {

// Runs the events of a modal showing. The scenario runner reads its statements inside the
// showing; a unit test plays a queue of steps.
class ModalDriver {
public:
    virtual ~ModalDriver() = default;
    // Returns when `form` has unloaded (or when the driver has nothing more to do).
    virtual void runUntilUnloaded(forms::Form& form) = 0;
};

// A dialog came up that the script had prepared no answer for. It ends the scenario.
class UnansweredDialog final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ShownMessage {
    forms::MessageRequest request;
    forms::MessageAnswer answer;
};

struct HelpCall {
    std::string file;
    int command = 0;
};

// The desktop without a screen: a virtual clock for the timers, scripted answers for the
// dialogs, and a record of everything the program showed, printed and stored.
class HeadlessPlatform final : public forms::Platform {
public:
    // ---- forms::Platform
    forms::MessageAnswer messageBox(const forms::MessageRequest& request) override;
    void runModal(forms::Form& form, forms::Form* owner) override;
    void showModeless(forms::Form& form, forms::Form* parentFrame) override;
    // An owned window takes the runner's statements beside its modal owner.
    void showOwned(forms::Form& form, forms::Form& owner) override { owners_[&form] = &owner; }
    void formUnloaded(forms::Form& form) override;
    void arrange(forms::Arrangement arrangement) override;
    forms::Form* activeChild() override { return active_; }
    void activate(forms::Form& child) override;
    void timerChanged(forms::Timer& timer) override;
    forms::FileDialogResult fileDialog(const forms::FileDialogRequest& request) override;
    forms::PrintDialogResult printDialog(const std::string& title) override;
    bool printText(const std::string& heading, const std::string& text) override;
    std::optional<std::string> clipboardText() override { return clipboard_; }
    void setClipboardText(const std::string& text) override { clipboard_ = text; }
    std::optional<std::string> readSetting(const std::string& application, const std::string& section,
                                           const std::string& key) override;
    void saveSetting(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& value) override;
    std::optional<std::string> showHelp(const std::string& file, int command) override;
    // Writes a small stand-in file that names the control, so that a scenario sees where a
    // picture would have gone.
    std::optional<std::string> savePicture(const forms::Control& control, const std::string& path) override;
    std::int64_t clockMs() override { return now(); }

    // ---- Time
    std::int64_t now() const { return clock_.now(); }
    // Fires every timer that falls due up to `until`, in time order, then sets the clock to
    // `until`. Stops early, right after a tick, when the form of the innermost modal showing
    // (as it was at the call) has unloaded, or when `stop` says so. Returns whether the
    // clock reached `until`.
    bool advance(std::int64_t until, const std::function<bool()>& stop = {});
    std::optional<std::int64_t> dueTime(const forms::Timer& timer) const { return clock_.dueTime(timer); }

    // While a message box is open the clock runs on by this much, firing the timers that
    // fall due, as the nested loop of a real message box would. 0 (the default) answers at once.
    void setMessageDwell(std::int64_t ms) { messageDwell_ = ms; }

    // Without a driver a modal showing is a failure of the script.
    void setModalDriver(ModalDriver* driver) { driver_ = driver; }
    // The forms shown modally now, the innermost last.
    const std::vector<forms::Form*>& modalForms() const { return modal_; }
    // The form whose window owns `form`'s window, or nothing.
    forms::Form* owner(const forms::Form& form) const;

    // ---- Answers, used oldest first
    // A box with only OK takes a queued OK, or is answered OK without one; a question must
    // have Yes or No at the front of the queue.
    void queueAnswer(forms::MessageAnswer answer) { answers_.push_back(answer); }
    void queueFileDialog(forms::FileDialogResult result) { fileResults_.push_back(std::move(result)); }
    void queuePrintDialog(forms::PrintDialogResult result) { printResults_.push_back(std::move(result)); }

    // ---- What the program did
    const std::vector<ShownMessage>& messages() const { return messages_; }
    const std::vector<forms::FileDialogRequest>& fileDialogs() const { return fileDialogs_; }
    const std::vector<std::string>& printed() const { return printed_; }
    const std::optional<HelpCall>& lastHelp() const { return lastHelp_; }
    const std::optional<forms::Arrangement>& lastArrangement() const { return lastArrangement_; }
    // The frame (the form shown modelessly without a parent) and its children in the order shown.
    forms::Form* frame() const { return frame_; }
    const std::vector<forms::Form*>& children() const { return children_; }
    bool isChild(const forms::Form& form) const;
    // The per-user settings store, by section and key.
    std::optional<std::string> setting(const std::string& section, const std::string& key) const;

private:
    VirtualClock clock_;
    std::int64_t messageDwell_ = 0;
    ModalDriver* driver_ = nullptr;
    std::vector<forms::Form*> modal_;
    std::deque<forms::MessageAnswer> answers_;
    std::deque<forms::FileDialogResult> fileResults_;
    std::deque<forms::PrintDialogResult> printResults_;
    std::vector<ShownMessage> messages_;
    std::vector<forms::FileDialogRequest> fileDialogs_;
    std::vector<std::string> printed_;
    std::optional<HelpCall> lastHelp_;
    std::optional<forms::Arrangement> lastArrangement_;
    forms::Form* frame_ = nullptr;
    std::vector<forms::Form*> children_;
    std::map<const forms::Form*, forms::Form*> owners_;
    forms::Form* active_ = nullptr;
    std::string clipboard_;
    std::map<std::pair<std::string, std::string>, std::string> settings_;
};

// How the scenario language writes message box answers, buttons and icons.
std::string AnswerName(forms::MessageAnswer answer);
std::string ButtonsName(forms::MessageButtons buttons);
std::string IconName(forms::MessageIcon icon);

} // namespace marlune::headless
