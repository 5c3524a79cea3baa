#pragma once

#include "forms/form.h"

class QEvent;
class QWidget;

namespace marlune::qt {

// Events after which a window's place or state is reported anew.
bool MovesWindow(const QEvent& event);

// Writes the window's place (its frame, for a top-level window) and state into the form's
// left, top, width, height and window state, where the form's code reads them.
void ReportGeometry(const QWidget& window, forms::Form& form);

} // namespace marlune::qt
