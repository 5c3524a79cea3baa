#include "transfer/status.h"

#include "forms/platform.h"
#include "link/command_exchange.h"

namespace marlune::transfer {

Status::Status()
    : forms::Form("Status", "Status"), StatusTimer(add<forms::Timer>("StatusTimer", 1)),
      Progress(add<forms::ProgressBar>("Progress", 0, kFullBar)),
      ProgressLabel(add<forms::Label>("ProgressLabel", "Progress")),
      statText(add<forms::Label>("statText", "Downloading ...")), Cancel(add<forms::Button>("Cancel", "Cancel")),
      machine_(*this)
{
    StatusTimer.onTick = [this] { timerTick(); };
    Cancel.onClick = [this] { cancelClick(); };
}

void Status::showTransfer(const std::string& caption, forms::Form* owner)
{
    if (!loaded() && !load())
        return;
    setCaption(caption);
    forms::ShowModal(*this, owner);
}

void Status::formLoad()
{
    machine_.reset();
    questionOpen_ = false;
    closingSelf_ = false;
}

void Status::timerTick()
{
    if (machine_.transferDone()) {
        closeSelf();
        return;
    }
    // The transfer stands still while the operator decides whether to cancel it.
    if (questionOpen_)
        return;
    if (machine_.tick(*this))
        closeSelf();
}

void Status::cancelClick()
{
    if (confirmCancel())
        closeSelf();
}

bool Status::confirmCancel()
{
    const std::optional<std::string> question = machine_.cancelQuestion();
    if (!question || questionOpen_)
        return false;
    questionOpen_ = true;
    const forms::MessageAnswer answer = forms::MsgBox(*question, forms::MessageButtons::YesNo);
    questionOpen_ = false;
    if (answer != forms::MessageAnswer::Yes)
        return false;
    machine_.cancel(*this);
    return true;
}

void Status::closeSelf()
{
    closingSelf_ = true;
    unload();
}

// The close box is the Cancel button: the same question, and nothing where Cancel does nothing.
bool Status::formUnload()
{
    if (closingSelf_)
        return true;
    return confirmCancel();
}

bool Status::exchange(std::string& command, std::string& reply) { return link::SendCommand(command, reply); }

void Status::showProgress(int value) { Progress.setValue(value); }

void Status::showProgressLabel(const std::string& text) { ProgressLabel.setCaption(text); }

void Status::showStatText(const std::string& text) { statText.setCaption(text); }

void Status::tell(const std::string& message) { forms::MsgBox(message); }

} // namespace marlune::transfer
