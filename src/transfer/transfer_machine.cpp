#include "transfer/transfer_machine.h"

#include <algorithm>
#include <limits>

#include "forms/number.h"
#include "link/command_exchange.h"

namespace marlune::transfer {

namespace {

std::int64_t StepFor(std::int64_t units) { return forms::DivideRoundHalfEven(kFullBar, units); }

} // namespace

std::string CleanProgramLine(const std::string& line)
{
    std::string cleaned;
    for (const char c : link::CleanCommand(line)) {
        if (static_cast<unsigned char>(c) > 20)
            cleaned.push_back(c);
    }
    return cleaned;
}

std::string FourthField(const std::string& reply)
{
    std::string field;
    int commas = 0;
    for (const char c : reply) {
        if (c == ',')
            ++commas;
        else if (commas == 3)
            field.push_back(c);
    }
    return field;
}

void TransferMachine::reset()
{
    m_.operationResult = 0;
    m_.totalProgLine = 0;
    transferState_ = 1;
    progValue_ = 0;
    iVarIndex_ = 1;
    vVarIndex_ = 1;
    transferDone_ = false;
    writer_.abandon();
    reader_.close();
}

bool TransferMachine::tick(TransferHost& host)
{
    switch (static_cast<Operation>(m_.operationType)) {
    case Operation::StoreToFile:
    case Operation::ReadMemory: return readMemory(host);
    case Operation::LoadFromFile: return loadFromFile(host);
    case Operation::ProgramDownload: programDownload(host); return false;
    case Operation::ProgramUpload: programUpload(host); return false;
    }
    return false;
}

bool TransferMachine::readMemory(TransferHost& host)
{
    const bool toFile = m_.operationType == static_cast<std::int16_t>(Operation::StoreToFile);
    switch (transferState_) {
    case 1:
        m_.memoryValues.clear();
        if (const std::string why = toFile ? writer_.open(m_.fileName) : std::string(); !why.empty()) {
            host.tell("The data file " + m_.fileName + " could not be opened for writing: " + why);
            return true;
        }
        transferState_ = 2;
        return false;
    case 2: return readVariable(host, 'I', iVarIndex_, kLastIVariable, 4, false);
    case 3: return readVariable(host, 'V', vVarIndex_, kLastVVariable, 3, true);
    case 4:
        if (!toFile) {
            m_.operationResult = 1;
            transferDone_ = true;
            return false;
        }
        if (const std::string why = writer_.commit(); !why.empty()) {
            host.tell("The data file " + m_.fileName + " could not be written: " + why);
            return true;
        }
        finishFileTransfer(host, "Uploading I and V variable to file done!");
        return false;
    }
    return false;
}

bool TransferMachine::readVariable(TransferHost& host, char letter, int& index, int last, int step, bool limited)
{
    std::string command = letter + std::to_string(index);
    std::string reply;
    host.exchange(command, reply);
    const std::optional<std::int32_t> value = forms::ToInt32(reply);
    // A reply that is no number (a lost link answers with the exchange's failure text) must not
    // become a line that would set the variable to something else on a restore.
    if (!value) {
        writer_.abandon();
        host.tell("Reading " + command + " failed: " + reply);
        return true;
    }
    if (!writer_.isOpen()) {
        m_.memoryValues.push_back({command, *value});
    } else if (const std::string why = writer_.writeLine(command + "=" + std::to_string(*value)); !why.empty()) {
        writer_.abandon();
        host.tell("The data file " + m_.fileName + " could not be written: " + why);
        return true;
    }
    if (++index > last) {
        index = 1;
        ++transferState_;
    }
    addProgress(host, step, limited);
    host.showProgressLabel("Uploading " + command);
    return false;
}

bool TransferMachine::loadFromFile(TransferHost& host)
{
    switch (transferState_) {
    case 1:
        if (const std::string why = reader_.open(m_.fileName); !why.empty()) {
            host.tell("The data file " + m_.fileName + " could not be opened for reading: " + why);
            return true;
        }
        transferState_ = 2;
        return false;
    case 2: {
        std::optional<std::string> line = reader_.readLine();
        if (!line) {
            transferState_ = 3;
            return false;
        }
        std::string reply;
        host.exchange(*line, reply);
        addProgress(host, 3, true);
        host.showProgressLabel("Downloading " + *line);
        return false;
    }
    case 3:
        reader_.close();
        finishFileTransfer(host, "Downloading I and V variables done!");
        return false;
    }
    return false;
}

void TransferMachine::finishFileTransfer(TransferHost& host, const std::string& message)
{
    host.showProgress(kFullBar);
    // The dialog closes only on the tick after the message was answered.
    host.tell(message);
    transferDone_ = true;
    host.showProgressLabel("Done!");
}

void TransferMachine::programDownload(TransferHost& host)
{
    switch (transferState_) {
    case 1: {
        const std::int64_t step = m_.programStr.empty() ? kFullBar : StepFor(std::ssize(m_.programStr));
        progStep_ = static_cast<int>(std::max<std::int64_t>(step, 1));
        progValue_ = 0;
        transferState_ = 2;
        send(host, "CLOSE");
        send(host, "OPEN PROG " + std::to_string(m_.ProgramNumber));
        send(host, "CLEAR");
        charIndex_ = 0;
        lineBuffer_.clear();
        return;
    }
    case 2: {
        ++charIndex_;
        if (charIndex_ > m_.programStr.size()) {
            transferState_ = 3;
            return;
        }
        const char c = m_.programStr[charIndex_ - 1];
        if (c == '\r' || c == '\n') {
            if (!lineBuffer_.empty()) {
                const std::string cleaned = CleanProgramLine(lineBuffer_);
                if (!cleaned.empty()) {
                    host.showStatText(cleaned);
                    send(host, cleaned);
                }
                lineBuffer_.clear();
            }
        } else {
            lineBuffer_.push_back(c);
        }
        addProgress(host, progStep_, true);
        return;
    }
    case 3:
        // A last line without a line end goes as it stands; the command exchange still cleans it.
        if (!lineBuffer_.empty())
            send(host, lineBuffer_);
        send(host, "CLOSE");
        transferDone_ = true;
        m_.operationResult = 1;
        return;
    }
}

void TransferMachine::programUpload(TransferHost& host)
{
    switch (transferState_) {
    case 1: {
        host.showStatText("Uploading...");
        send(host, "CLOSE");
        m_.programStr.clear();
        std::string command = "PSTAT" + std::to_string(m_.ProgramNumber);
        std::string reply;
        host.exchange(command, reply);
        const forms::WholeNumber lines =
                forms::ParseWholeNumber(FourthField(reply), 0, std::numeric_limits<std::int32_t>::max());
        m_.totalProgLine = lines.ok() ? static_cast<std::int32_t>(lines.value) : 0;
        if (m_.totalProgLine <= 0)
            m_.totalProgLine = 1;
        progStep_ = static_cast<int>(StepFor(m_.totalProgLine));
        uploadLine_ = 1;
        progValue_ = 0;
        transferState_ = 2;
        return;
    }
    case 2: {
        std::string command = "UPLOAD" + std::to_string(m_.ProgramNumber);
        std::string reply;
        host.exchange(command, reply);
        if (reply.empty())
            return;
        host.showStatText(reply);
        if (reply.back() != '\n')
            reply += "\r\n";
        m_.programStr += reply;
        if (++uploadLine_ > m_.totalProgLine)
            transferState_ = 3;
        addProgress(host, progStep_, true);
        return;
    }
    case 3:
        m_.operationResult = 1;
        transferDone_ = true;
        return;
    }
}

std::optional<std::string> TransferMachine::cancelQuestion() const
{
    switch (static_cast<Operation>(m_.operationType)) {
    case Operation::StoreToFile:
    case Operation::ReadMemory:
        if (transferState_ == 2 || transferState_ == 3)
            return "Are you sure you want to cancel in the middle of upload?";
        break;
    case Operation::LoadFromFile:
        if (transferState_ == 2)
            return "Are you sure you want to cancel in the middle of download?";
        break;
    case Operation::ProgramDownload:
        if (transferState_ == 2)
            return "Are you sure you want to cancel in the middle of program download?";
        break;
    case Operation::ProgramUpload: return "Are you sure you want to cancel in the middle of program upload?";
    }
    return std::nullopt;
}

void TransferMachine::cancel(TransferHost& host)
{
    switch (static_cast<Operation>(m_.operationType)) {
    case Operation::StoreToFile:
        // What was written so far stays on disk, under the name the operator chose.
        if (const std::string why = writer_.commit(); !why.empty())
            host.tell("The data file " + m_.fileName + " could not be written: " + why);
        break;
    case Operation::LoadFromFile: reader_.close(); break;
    case Operation::ProgramDownload: send(host, "CLOSE"); break;
    case Operation::ProgramUpload:
        m_.operationResult = 0;
        m_.programStr.clear();
        break;
    case Operation::ReadMemory: m_.operationResult = 0; break;
    }
    transferDone_ = true;
}

void TransferMachine::addProgress(TransferHost& host, int step, bool limited)
{
    progValue_ += step;
    if (limited)
        progValue_ = std::min(progValue_, kFullBar);
    host.showProgress(progValue_);
}

void TransferMachine::send(TransferHost& host, std::string command)
{
    std::string reply;
    host.exchange(command, reply);
}

} // namespace marlune::transfer
