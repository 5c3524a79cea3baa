#include "panel/new_pos.h"

#include <limits>

#include "forms/number.h"
#include "forms/platform.h"

namespace marlune::panel {

NewPos::NewPos()
    : forms::Form("NewPos", "Position Set"), NewPosLabel(add<forms::Label>("NewPosLabel", "Enter New Position Value:")),
      NewPosValue(add<forms::TextBox>("NewPosValue", "0")), OK(add<forms::Button>("OK", "OK")),
      Cancel(add<forms::Button>("Cancel", "Cancel"))
{
    OK.isDefault = true;
    Cancel.isCancel = true;
    OK.onClick = [this] { accept(); };
    Cancel.onClick = [this] { unload(); };
    NewPosValue.onKeyDown = [this](int& keyCode) {
        if (keyCode == forms::kKeyEnter)
            accept();
    };
}

void NewPos::formLoad()
{
    posValueOK = 0;
    NewPosValue.setText("0");
}

void NewPos::accept()
{
    constexpr std::int64_t kMin = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
    const forms::WholeNumber number = forms::ParseWholeNumber(NewPosValue.text(), kMin, kMax, forms::Fraction::Refuse);
    // A position counter takes a whole number: anything else is answered, and the text stays
    // for the operator to mend.
    if (!number.ok()) {
        forms::MsgBox(forms::DescribeNumberError(NewPosValue.text(), number.error, kMin, kMax));
        return;
    }
    posValueOK = 1;
    posValue = static_cast<std::int32_t>(number.value);
    unload();
}

} // namespace marlune::panel
