#pragma once

#include <cstdint>
#include <string>

#include "forms/form.h"

namespace marlune::tools {

// Free conversation with the controller: every command and reply in a scrolling log. The
// terminal holds the link from its load to its unload.
class Terminal final : public forms::Form {
public:
    static constexpr std::int16_t kMaxLogEntries = 1000;

    Terminal();

    forms::TextBox& LogWindow;
    forms::TextBox& CommandLine;
    forms::Button& CloseTerminal;
    forms::Button& Test;
    forms::Timer& Timer1;

    void AppendLog(const std::string& message);

    std::int16_t lineCount = 0;
    bool focusPending = false;

protected:
    void formLoad() override;
    bool formUnload() override;

private:
    void commandLineKeyDown(int keyCode);
    void enterCommand();
};

} // namespace marlune::tools
