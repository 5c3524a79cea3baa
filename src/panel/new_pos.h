#pragma once

#include <cstdint>

#include "forms/form.h"

namespace marlune::panel {

// The small dialog in which the operator types a new value for a position counter.
class NewPos final : public forms::Form {
public:
    NewPos();

    forms::Label& NewPosLabel;
    forms::TextBox& NewPosValue;
    forms::Button& OK;
    forms::Button& Cancel;

    std::int16_t posValueOK = 0;
    std::int32_t posValue = 0;

protected:
    void formLoad() override;

private:
    void accept();
};

} // namespace marlune::panel
