#include "transfer/memory_operations.h"

#include "forms/number.h"
#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/open_link.h"
#include "transfer/compare_memory.h"
#include "transfer/status.h"

namespace marlune::transfer {

namespace {

constexpr const char* kDataFileFilter = "Marlune Program Files (*.dat)|*.dat";
constexpr const char* kPresetName = "*.dat";
constexpr const char* kStoreTitle = "STORE MARLUNE DATA";

// The data file the operator chooses, or nothing: cancelled, a failure (told), or a name that
// still holds the preset's "*". Only a store asks before it names a file that is there: a
// restore, though chosen in a save dialog, reads the file.
std::optional<std::string> ChooseDataFile(const std::string& title, bool save, bool replaces)
{
    std::optional<std::string> chosen = forms::ChooseFile({title, kDataFileFilter, kPresetName, save, replaces, ""});
    if (!chosen || chosen->empty() || chosen->find('*') != std::string::npos)
        return std::nullopt;
    return chosen;
}

// Opens the link for one operation; on failure says `failure` and clears `connected`.
bool OpenForOperation(const char* failure)
{
    link::ControllerLink& link = link::Link();
    if (!link::OpenLink()) {
        forms::MsgBox(failure);
        link.connected = false;
        return false;
    }
    link.connected = true;
    return true;
}

void CloseAfterOperation()
{
    if (link::Link().connected)
        link::CloseLink();
}

void RunTransfer(Status& status, Operation operation, const std::string& fileName, const std::string& caption)
{
    status.operationType = static_cast<std::int16_t>(operation);
    status.fileName = fileName;
    status.showTransfer(caption, nullptr);
}

void TransferDataFile(Status& status, const std::string& title, Operation operation, const std::string& caption)
{
    const std::optional<std::string> fileName = ChooseDataFile(title, true, operation == Operation::StoreToFile);
    if (!fileName || !OpenForOperation("Communication Error with Marlune"))
        return;
    RunTransfer(status, operation, *fileName, caption);
    CloseAfterOperation();
}

bool Send(const std::string& text, std::string& reply)
{
    std::string command = text;
    return link::SendCommand(command, reply);
}

// Waits for the controller to come back after STORE and reads the write counter. Nothing when
// it does not come back or the counter is no 16-bit number.
std::optional<std::string> FinishStore()
{
    std::string reply;
    bool answered = false;
    for (int attempt = 0; attempt < 11 && !answered; ++attempt)
        answered = Send("V1", reply);
    if (!answered)
        return std::nullopt;
    for (int attempt = 0; attempt < 21; ++attempt) {
        Send("$", reply);
        if (reply.starts_with('O'))
            break;
    }
    reply.clear();
    for (int attempt = 0; attempt < 7 && reply.empty(); ++attempt)
        Send("I48", reply);
    if (reply.empty())
        return "0";
    const std::optional<std::int16_t> counter = forms::ToInt16(reply);
    if (!counter)
        return std::nullopt;
    return std::to_string(*counter);
}

} // namespace

void StoreToFile(Status& status)
{
    TransferDataFile(status, "Store Marlune Data As", Operation::StoreToFile,
                     "Loading Variables from Marlune Memory to File");
}

void LoadFromFile(Status& status)
{
    TransferDataFile(status, "Restore Marlune Data", Operation::LoadFromFile,
                     "Loading Variables from File to Marlune Controller Memory");
}

void CompareMemoryWithFile(Status& status, CompareMemory& compare)
{
    const std::optional<std::string> fileName = ChooseDataFile("Compare Memory with File", false, false);
    if (!fileName)
        return;
    std::vector<VariableValue> inFile;
    if (const std::string why = ReadDataFileValues(*fileName, inFile); !why.empty()) {
        forms::MsgBox("The data file " + *fileName + " could not be read: " + why);
        return;
    }
    if (!OpenForOperation("Communication Error with Marlune"))
        return;
    RunTransfer(status, Operation::ReadMemory, {}, "Comparing Controller Memory with File");
    CloseAfterOperation();
    if (status.operationResult != 1)
        return;
    const std::vector<Difference> differences = FindDifferences(inFile, status.memoryValues);
    if (differences.empty()) {
        forms::MsgBox("Controller memory matches " + *fileName + ".");
        return;
    }
    compare.showDifferences(*fileName, differences);
}

void Store()
{
    if (forms::MsgBox("Store the Programs and Variables from Memory to EEPROM?", forms::MessageButtons::YesNo,
                      forms::MessageIcon::Question, kStoreTitle)
        != forms::MessageAnswer::Yes)
        return;
    if (!OpenForOperation("Communication Error with Marlune!"))
        return;
    std::string reply;
    Send("ABORT", reply);
    Send("???", reply);
    Send("STORE", reply);
    if (const std::optional<std::string> counter = FinishStore())
        forms::MsgBox("Store Done! Write Cycle: " + *counter, forms::MessageButtons::OK, forms::MessageIcon::None,
                      kStoreTitle);
    else
        forms::MsgBox("Store Failed!");
    CloseAfterOperation();
}

void Load()
{
    if (forms::MsgBox("Load Programs and Variables from EEPROM to Memory?", forms::MessageButtons::YesNo,
                      forms::MessageIcon::Question, kStoreTitle)
        != forms::MessageAnswer::Yes)
        return;
    if (!OpenForOperation("Communication Error with Marlune Controller!"))
        return;
    std::string reply;
    Send("LOAD", reply);
    forms::MsgBox("Load done!");
    CloseAfterOperation();
}

} // namespace marlune::transfer
