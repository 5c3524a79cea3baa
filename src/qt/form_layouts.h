#pragma once

#include <string_view>
#include <vector>

class QWidget;

namespace marlune::forms {
class Form;
}

namespace marlune::qt {

// The designed layout of one form: its .ui file, named after the form, whose widgets carry
// the names of the form's controls. A frame's layout sets up a QMainWindow.
struct FormLayout {
    std::string_view formName;
    bool frame;
    void (*setUp)(QWidget& window);
};

const std::vector<FormLayout>& FormLayouts();
const FormLayout* FindFormLayout(std::string_view formName);

// For a form that has no layout yet: one widget of the fitting kind per control, in a column,
// so that the form still works, if plainly.
void SetUpPlainLayout(const forms::Form& form, QWidget& window);

} // namespace marlune::qt
