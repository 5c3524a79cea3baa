#include "tools/program_viewer.h"

#include "forms/platform.h"
#include "transfer/status.h"

namespace marlune::tools {

ProgramViewer::ProgramViewer(transfer::Status& status)
    : forms::Form("ProgramViewer", "Program Viewer"), ProgList(add<forms::TextBox>("ProgList")),
      Upload(add<forms::Button>("Upload", "Upload")), Download(add<forms::Button>("Download", "Download")),
      OK(add<forms::Button>("OK", "OK")), Timer1(add<forms::Timer>("Timer1", 10)), status_(status)
{
    ProgList.multiLine = true;
    ProgList.fontName = "Courier";
    forms::ReplaceTypedTabs(ProgList, Timer1, replaceTab);
    Upload.onClick = [this] { uploadProg(myProgNumber); };
    Download.onClick = [this] { download(); };
    OK.onClick = [this] { unload(); };
}

void ProgramViewer::uploadProg(std::int16_t& progNumber)
{
    // Called before the viewer is shown: the text must land in a loaded form to stay there.
    if (!loaded() && !load())
        return;
    status_.ProgramNumber = progNumber;
    status_.operationType = static_cast<std::int16_t>(transfer::Operation::ProgramUpload);
    status_.showTransfer("Uploading Program " + std::to_string(progNumber), this);
    if (status_.operationResult == 1)
        ProgList.setText(status_.programStr);
}

void ProgramViewer::download()
{
    status_.ProgramNumber = myProgNumber;
    status_.operationType = static_cast<std::int16_t>(transfer::Operation::ProgramDownload);
    status_.programStr = ProgList.text();
    status_.showTransfer("Downloading Program " + std::to_string(myProgNumber), this);
}

} // namespace marlune::tools
