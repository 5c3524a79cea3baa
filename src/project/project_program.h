#pragma once

#include <cstdint>

#include "forms/form.h"

namespace marlune::project {

class Projects;

// The editor of one program of the project. Its text is the live text of the program while the
// window is open; closing hands the text back to the project record.
class FrmProjectProgram final : public forms::Form {
public:
    explicit FrmProjectProgram(Projects& projects);

    forms::TextBox& programText;
    forms::TextBox& ProgramNumber;
    forms::ToolBar& Toolbar1;
    forms::Timer& Timer1;

    std::int32_t myProgramBit = 0;
    std::int16_t myProgramNumber = 0;
    std::int16_t replaceTab = 0;

protected:
    void formLoad() override;
    bool formUnload() override;

private:
    void toolbarClick(const std::string& key);

    Projects& projects_;
};

} // namespace marlune::project
