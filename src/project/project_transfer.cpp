#include "project/project_manager.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/number.h"
#include "forms/platform.h"
#include "link/bit_arithmetic.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/open_link.h"
#include "project/definitions.h"
#include "project/project_link.h"
#include "project/project_program.h"
#include "project/projects.h"
#include "transfer/status.h"
#include "transfer/transfer_machine.h"

namespace marlune::project {

namespace {

constexpr const char* OpenError = "Error Opening Marlune Communication!";
constexpr const char* ListError = "Error List Program";
constexpr const char* NameHead = "PROJ=\"";
// The text of a raw frame leaves room in the send buffer for its CR and the closing NUL.
constexpr std::size_t LongestRawText = link::kSendBufferSize - 2;
constexpr std::size_t LongestProjectName = LongestRawText - std::char_traits<char>::length(NameHead) - 1;

// The raw commands of one click, sent uncleaned through the library. Both buffers are zero at the
// click's start, and each frame ends in a NUL, so nothing of a longer frame before reaches the wire.
class RawCommands final {
public:
    // `text` is at most LongestRawText characters; its reply is not read.
    void send(const std::string& text)
    {
        const std::size_t end = std::min(text.size(), LongestRawText);
        std::copy_n(text.begin(), end, sendBuffer_.begin());
        sendBuffer_[end] = '\r';
        sendBuffer_[end + 1] = '\0';
        link::Transact(link::Link(), sendBuffer_.data(), receiveBuffer_.data());
    }

private:
    std::array<char, link::kSendBufferSize> sendBuffer_{};
    std::vector<char> receiveBuffer_ = std::vector<char>(link::kReceiveBufferSize);
};

std::string Reply(const std::string& text)
{
    std::string command = text;
    std::string reply;
    link::SendCommand(command, reply);
    return reply;
}

std::vector<std::string> Lines(std::string_view text, std::string_view end)
{
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t stop = std::min(text.find(end, start), text.size());
        lines.emplace_back(text.substr(start, stop - start));
        start = stop + end.size();
    }
    return lines;
}

std::string Quoted(const std::vector<std::string>& lines, std::size_t i)
{
    return i < lines.size() ? "\"" + lines[i] + "\"" : "no line";
}

// The lines of a prepared text as the transfer dialog puts them on the controller: each cleaned
// as the dialog cleans it, and those that clean to nothing left out.
std::vector<std::string> SentLines(std::string_view prepared)
{
    std::vector<std::string> sent;
    for (const std::string& line : Lines(prepared, "\r")) {
        if (std::string cleaned = transfer::CleanProgramLine(line); !cleaned.empty())
            sent.push_back(std::move(cleaned));
    }
    return sent;
}

// Where what the controller holds of program n first differs from what was sent, as the operator
// reads it; nothing when the two agree line for line.
std::optional<std::string> FirstDifference(int n, std::string_view prepared, std::string_view held)
{
    const std::vector<std::string> sent = SentLines(prepared);
    std::vector<std::string> kept = Lines(held, "\r\n");
    // The dialog fetches one line even of an empty program, and the controller answers it with END.
    if (sent.empty() && kept == std::vector<std::string>{"END"})
        kept.clear();
    const std::size_t common = std::min(sent.size(), kept.size());
    const std::size_t i = static_cast<std::size_t>(
            std::mismatch(sent.begin(), sent.begin() + static_cast<std::ptrdiff_t>(common), kept.begin()).first
            - sent.begin());
    if (i == common && sent.size() == kept.size())
        return std::nullopt;
    return "Program " + std::to_string(n) + ", line " + std::to_string(i + 1) + ": sent " + Quoted(sent, i) + ", held "
           + Quoted(kept, i) + ".";
}

// The project's name in a reply to "PROJ ": what stands between the first double quote and the
// next one, all that follows a lone one, and nothing without one.
std::string NameBetweenQuotes(std::string_view reply)
{
    const std::size_t open = reply.find('"');
    if (open == std::string_view::npos)
        return {};
    const std::string_view rest = reply.substr(open + 1);
    return std::string(rest.substr(0, rest.find('"')));
}

// The program set in a reply to "PRON": 15 when the controller has none ("?"), the number it
// answered, or nothing for a reply that is neither.
std::optional<std::int32_t> ProgramSetOf(std::string_view reply)
{
    if (reply.starts_with('?'))
        return 15;
    return forms::ToInt32(reply);
}

} // namespace

void FrmProjectManager::downloadPrograms()
{
    DefinitionTable table;
    std::string failure = ParseDefinitions(DefinitionList.text(), table);
    if (failure.empty())
        failure = ValidateDefinitions(table);
    if (!failure.empty()) {
        forms::MsgBox(failure);
        return;
    }
    std::array<std::string, ProgramCount> prepared;
    for (int n = 1; n <= ProgramCount; ++n) {
        if (projects_.programWindowOpen(n))
            prepared[static_cast<std::size_t>(n - 1)] =
                    PrepareProgram(projects_.programWindow(n)->programText.text(), table);
    }
    if (ProjName.text().size() > LongestProjectName) {
        forms::MsgBox("Project name too long to send: at most " + std::to_string(LongestProjectName) + " characters.");
        return;
    }
    if (!link::OpenLink()) {
        forms::MsgBox(OpenError);
        return;
    }
    RawCommands raw;
    std::array<bool, ProgramCount> downloadSelection{};
    for (int n = 1; n <= ProgramCount; ++n)
        downloadSelection[static_cast<std::size_t>(n - 1)] =
                (selProg(n).value() || SelProgAll.value()) && selProg(n).enabled();
    downloaded_ = {};
    Verify.setEnabled(false);
    SendUnread("CLOSE");
    for (int n = 1; n <= ProgramCount; ++n) {
        const std::size_t i = static_cast<std::size_t>(n - 1);
        if (!downloadSelection[i])
            continue;
        if (!transferProgram(n, "Downloading Program ", 3, prepared[i])) {
            forms::MsgBox("Download Error 0");
            link::CloseLink();
            return;
        }
        downloaded_[i] = prepared[i];
    }
    raw.send(NameHead + ProjName.text() + "\"");
    raw.send("PRON=" + std::to_string(projects_.state.programWindowMask));
    link::CloseLink();
    forms::MsgBox("Download done!");
    Verify.setEnabled(true);
}

bool FrmProjectManager::transferProgram(int n, const std::string& caption, std::int16_t operation,
                                        const std::string& text)
{
    transfer::Status& status = projects_.status();
    status.ProgramNumber = static_cast<std::int16_t>(n);
    status.operationType = operation;
    status.programStr = text;
    status.showTransfer(caption + std::to_string(n), this);
    return status.operationResult == 1;
}

void FrmProjectManager::verifyPrograms()
{
    if (!link::OpenLink()) {
        forms::MsgBox(OpenError);
        return;
    }
    std::string differences;
    for (int n = 1; n <= ProgramCount; ++n) {
        const std::optional<std::string>& sent = downloaded_[static_cast<std::size_t>(n - 1)];
        if (!sent)
            continue;
        if (!transferProgram(n, "Verifying Program ", 4, {})) {
            forms::MsgBox(ListError);
            link::CloseLink();
            return;
        }
        if (const std::optional<std::string> difference = FirstDifference(n, *sent, projects_.status().programStr))
            differences += (differences.empty() ? "" : "\r\n") + *difference;
    }
    link::CloseLink();
    forms::MsgBox(differences.empty() ? "Verified: the controller holds what was sent." : differences);
}

void FrmProjectManager::DoUploadPrograms()
{
    if (!projects_.state.silentUpload
        && forms::MsgBox("Uploading will lose all definition.  Continue?", forms::MessageButtons::YesNo)
                   == forms::MessageAnswer::No)
        return;
    if (!link::OpenLink()) {
        forms::MsgBox(OpenError);
        return;
    }
    if (SelProgAll.value()) {
        // Closing a window moves the selection, so each program is asked anew.
        for (int n = 1; n <= ProgramCount; ++n) {
            if (projects_.programWindowOpen(n) && (selProg(n).value() || SelProgAll.value()))
                projects_.programWindow(n)->unload();
        }
    }
    const auto selected =
            std::find_if(SelProg.begin(), SelProg.end(), [](forms::OptionButton* option) { return option->value(); });
    const bool done =
            selected != SelProg.end() ? uploadSelected(static_cast<int>(selected - SelProg.begin()) + 1) : uploadAll();
    if (!done)
        return;
    link::CloseLink();
    forms::MsgBox("Upload done!");
}

bool FrmProjectManager::uploadSelected(int n)
{
    // A selection left standing by an opened project whose window is closed opens that window,
    // as ticking its box would.
    if (!projects_.programWindowOpen(n))
        displayProg(n).setValue(1);
    if (!transferProgram(n, "Uploading Program ", 4, {})) {
        forms::MsgBox(ListError);
        link::CloseLink();
        return false;
    }
    fillWindow(n, projects_.status().programStr);
    return true;
}

bool FrmProjectManager::uploadAll()
{
    ProjectState& state = projects_.state;
    const std::string reply = Reply("PRON");
    const std::optional<std::int32_t> programSet = ProgramSetOf(reply);
    if (!programSet) {
        forms::MsgBox("Upload Error: the controller's program set could not be read (" + reply + ").");
        link::CloseLink();
        return false;
    }
    state.programWindowMask = 0;
    for (int n = 1; n <= ProgramCount; ++n) {
        if (link::BitAnd(*programSet, ProgramBit(n)) != 0)
            displayProg(n).setValue(1);
    }
    state.programWindowMask = *programSet;
    std::array<std::string, ProgramCount> uploadText;
    for (int n = 1; n <= ProgramCount; ++n) {
        if (!selProg(n).enabled() || !projects_.programWindowOpen(n))
            continue;
        if (!transferProgram(n, "Uploading Program ", 4, {})) {
            forms::MsgBox(ListError);
            link::CloseLink();
            return false;
        }
        uploadText[static_cast<std::size_t>(n - 1)] = projects_.status().programStr;
    }
    for (int n = 1; n <= ProgramCount; ++n) {
        if (projects_.programWindowOpen(n))
            fillWindow(n, uploadText[static_cast<std::size_t>(n - 1)]);
    }
    const std::string name = NameBetweenQuotes(Reply("PROJ "));
    ProjName.setText(name);
    state.projectFile = name;
    SelProgAll.setValue(true);
    projects_.showDocument();
    return true;
}

void FrmProjectManager::fillWindow(int n, const std::string& text)
{
    numberWindow(n);
    FrmProjectProgram& window = *projects_.programWindow(n);
    window.programText.setText(text);
    forms::CurrentPlatform().showModeless(window, &projects_.frame());
}

} // namespace marlune::project
