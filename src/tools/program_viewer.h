#pragma once

#include <cstdint>

#include "forms/form.h"

namespace marlune::transfer {
class Status;
}

namespace marlune::tools {

// One program as the controller holds it: fetched, edited and written back through the
// transfer dialog, over the link of the panel that opened the viewer.
class ProgramViewer final : public forms::Form {
public:
    explicit ProgramViewer(transfer::Status& status);

    forms::TextBox& ProgList;
    forms::Button& Upload;
    forms::Button& Download;
    forms::Button& OK;
    forms::Timer& Timer1;

    std::int16_t myProgNumber = 0;
    std::int16_t replaceTab = 0;

    // Fetches the program into ProgList; a cancelled upload leaves the text as it was.
    void uploadProg(std::int16_t& progNumber);

private:
    void download();

    transfer::Status& status_;
};

} // namespace marlune::tools
