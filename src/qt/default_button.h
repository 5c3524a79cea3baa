#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace marlune::qt {

// The button that Return or Escape presses when no control takes the key: the form's first
// enabled and visible default button for Return, its cancel button for Escape, else none.
forms::Button* DefaultButton(const forms::Form& form, int qtKey);

} // namespace marlune::qt
