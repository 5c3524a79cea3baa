#pragma once

#include "forms/form.h"

namespace marlune::panel {

// Shows the two analog inputs, read every 300 ms on the panel's link.
class MonitorAI final : public forms::Form {
public:
    MonitorAI();

    forms::Label& Label1;
    forms::Label& Label2;
    forms::TextBox& AI1;
    forms::TextBox& AI2;
    forms::Timer& AITimer;
    forms::Button& CloseBtn;

private:
    void readInputs();
};

} // namespace marlune::panel
