#pragma once

#include "forms/form.h"

namespace marlune::shell {

// The About box: the application's title and the version it was built as.
class FrmAbout final : public forms::Form {
public:
    FrmAbout();

    forms::Picture& picIcon;
    forms::Label& lblTitle;
    forms::Label& lblVersion;
    forms::Label& Label1;
    forms::Button& cmdOK;

protected:
    void formLoad() override;
};

} // namespace marlune::shell
