#include "forms/platform.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "forms/form.h"

namespace marlune::forms {

namespace {
Platform* gPlatform = nullptr;
}

Platform& CurrentPlatform()
{
    if (!gPlatform) {
        std::fputs("marlune: no platform was set before the first form was used\n", stderr);
        std::abort();
    }
    return *gPlatform;
}

std::int64_t Platform::clockMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void SetPlatform(Platform* platform) { gPlatform = platform; }

bool HasPlatform() { return gPlatform != nullptr; }

MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, MessageIcon icon, const std::string& title)
{
    return CurrentPlatform().messageBox({text, title.empty() ? std::string(kApplicationTitle) : title, buttons, icon});
}

std::optional<std::string> ChooseFile(const FileDialogRequest& request)
{
    FileDialogResult chosen = CurrentPlatform().fileDialog(request);
    if (chosen.outcome == FileDialogResult::Outcome::Failed)
        MsgBox(chosen.error + kErrorSource);
    if (chosen.outcome != FileDialogResult::Outcome::Chosen)
        return std::nullopt;
    return std::move(chosen.fileName);
}

bool ChoosePrinter(const std::string& title)
{
    const PrintDialogResult chosen = CurrentPlatform().printDialog(title);
    if (chosen.outcome == PrintDialogResult::Outcome::Failed)
        MsgBox(chosen.error + kErrorSource);
    return chosen.outcome == PrintDialogResult::Outcome::Chosen;
}

void ShowModal(Form& form, Form* owner)
{
    if (!form.loaded() && !form.load())
        return;
    CurrentPlatform().runModal(form, owner);
}

} // namespace marlune::forms
