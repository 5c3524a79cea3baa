#include "qt/default_button.h"

#include <Qt>

namespace marlune::qt {

forms::Button* DefaultButton(const forms::Form& form, int qtKey)
{
    for (forms::Control* control : form.controls()) {
        auto* button = dynamic_cast<forms::Button*>(control);
        if (!button || !button->enabled() || !button->visible())
            continue;
        if ((qtKey == Qt::Key_Return && button->isDefault) || (qtKey == Qt::Key_Escape && button->isCancel))
            return button;
    }
    return nullptr;
}

} // namespace marlune::qt
