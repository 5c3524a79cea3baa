#include "panel/main_control.h"

#include "forms/files.h"
#include "forms/number.h"
#include "forms/platform.h"

namespace marlune::panel {

namespace {

// Applies the fields of the saved line in order: targets, axis selection, then the program.
// Only digits count; a field without digits counts as 1; the speeds that follow are not read
// back, since the controller holds them.
template <class Apply>
void ForEachField(const std::string& line, Apply apply)
{
    std::string token;
    int field = 1;
    for (char c : line) {
        if (c >= '0' && c <= '9') {
            token.push_back(c);
        } else if (c == ',') {
            // A field too long for a 32-bit number cannot be read and is skipped.
            if (const auto value = forms::ToInt32(token.empty() ? std::string("1") : token))
                apply(field, *value);
            token.clear();
            ++field;
        }
    }
}

} // namespace

void MainControl::readPanelState()
{
    if (!forms::FileExists(kPanelStateFile))
        return;
    const auto bytes = forms::ReadFileBytes(kPanelStateFile);
    if (!bytes)
        return;
    const std::string line = bytes->substr(0, bytes->find_first_of("\r\n"));
    ForEachField(line, [this](int field, std::int32_t value) {
        if (field >= 1 && field <= 4)
            Target[static_cast<std::size_t>(field - 1)]->setText(std::to_string(value));
        else if (field >= 5 && field <= 8 && value == 1)
            Sel[static_cast<std::size_t>(field - 5)]->setValue(1);
        else if (field == 9 && value >= 1 && value <= 4)
            SelProg[static_cast<std::size_t>(value - 1)]->setValue(true);
    });
}

void MainControl::writePanelState()
{
    std::string line;
    for (const forms::TextBox* box : Target)
        line += box->text() + ",";
    for (const forms::CheckBox* box : Sel)
        line += box->value() == 1 ? "1," : "0,";
    // With "All Prog" chosen the program field is left out, and the speeds move up one place.
    if (!SelProgAll.value())
        line += getSelectedProgram() + ",";
    for (const forms::TextBox* box : {&HSPD, &LSPD, &ACCEL})
        line += box->text() + ",";
    const std::string error = forms::WriteFileAtomically(kPanelStateFile, line + "\r\n");
    if (!error.empty())
        forms::MsgBox(std::string("The panel's settings could not be written to ") + kPanelStateFile + ": " + error
                      + ".");
}

} // namespace marlune::panel
