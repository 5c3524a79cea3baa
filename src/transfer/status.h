#pragma once

#include "forms/form.h"
#include "transfer/transfer_machine.h"

namespace marlune::transfer {

// The one modal dialog through which every long transfer with the controller runs. The
// caller opens the link, sets the members of its operation and the caption, shows the dialog
// and reads the result after it has closed.
class Status final : public forms::Form, public TransferMembers, private TransferHost {
public:
    Status();

    forms::Timer& StatusTimer;
    forms::ProgressBar& Progress;
    forms::Label& ProgressLabel;
    forms::Label& statText;
    forms::Button& Cancel;

    // Loads the dialog, gives it the caption of the transfer and shows it modally; returns when
    // it has closed. The caption is set after the load, which would restore the designed one.
    void showTransfer(const std::string& caption, forms::Form* owner);

protected:
    void formLoad() override;
    bool formUnload() override;

private:
    void timerTick();
    void cancelClick();
    // Asks the question of Cancel, with the ticks held while it is on the screen; true on Yes.
    bool confirmCancel();
    void closeSelf();

    bool exchange(std::string& command, std::string& reply) override;
    void showProgress(int value) override;
    void showProgressLabel(const std::string& text) override;
    void showStatText(const std::string& text) override;
    void tell(const std::string& message) override;

    TransferMachine machine_;
    bool questionOpen_ = false;
    bool closingSelf_ = false;
};

} // namespace marlune::transfer
