#include "config/config_dialog.h"

#include <limits>

#include "forms/number.h"
#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/controller_variables.h"
#include "link/open_link.h"

namespace marlune::config {

namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();

} // namespace

ConfigDialog::ConfigDialog(std::string name, std::string caption) : forms::Form(std::move(name), std::move(caption)) {}

bool ConfigDialog::openLink(bool secondEthernetAttempt)
{
    link::ControllerLink& link = link::Link();
    link.connected = link::OpenLink(secondEthernetAttempt);
    if (!link.connected)
        forms::MsgBox(kOpenFailedText);
    return link.connected;
}

void ConfigDialog::readController(const std::function<void()>& read)
{
    textReadFailed_ = false;
    if (!openLink(true)) {
        readFailed_ = true;
        return;
    }
    read();
    readFailed_ = !link::Link().connected || textReadFailed_;
    // Also after a failed read, which left `connected` false: the dialog opened this link.
    link::CloseLink();
}

void ConfigDialog::readText(const std::string& command, forms::TextBox& box)
{
    std::string sent = command;
    std::string reply;
    if (!link::SendCommand(sent, reply))
        textReadFailed_ = true;
    box.setText(reply);
}

ConfigDialog::WriteEnd ConfigDialog::writeController(bool secondEthernetAttempt,
                                                     const std::function<bool()>& readCarried,
                                                     const std::function<void()>& write)
{
    if (readFailed_) {
        forms::MsgBox(kNothingWrittenText);
        return WriteEnd::Close;
    }
    if (!numbersAreWhole())
        return WriteEnd::StayOpen;
    if (!openLink(secondEthernetAttempt))
        return WriteEnd::Close;
    if (readCarried && !readCarried()) {
        link::CloseLink();
        return WriteEnd::StayOpen;
    }
    write();
    link::CloseLink();
    return WriteEnd::Close;
}

bool ConfigDialog::numbersAreWhole()
{
    for (const NumberField& field : numberFields_) {
        const forms::WholeNumber number = forms::ParseWholeNumber(field.box->text(), kLowest, kHighest);
        if (!number.ok()) {
            forms::MsgBox(field.caption + ": "
                          + forms::DescribeNumberError(field.box->text(), number.error, kLowest, kHighest));
            setFocus(*field.box);
            return false;
        }
    }
    return true;
}

bool ConfigDialog::ReadSharedWord(std::int32_t& i2)
{
    i2 = link::GetVar(2);
    return link::Link().connected;
}

std::int32_t ConfigDialog::Number(const forms::TextBox& box) { return forms::ToInt32(box.text()).value_or(0); }

void ConfigDialog::addBits(const BitTable& table)
{
    for (const BitBox& bit : table)
        add<forms::CheckBox>(bit.control, bit.caption);
}

forms::TextBox& ConfigDialog::addNumber(const std::string& name, const std::string& caption)
{
    forms::TextBox& box = add<forms::TextBox>(name, "0");
    numberFields_.push_back({&box, caption});
    return box;
}

} // namespace marlune::config
