#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "transfer/data_file.h"

namespace marlune::transfer {

// The transfers of the transfer dialog, by their operation numbers. ReadMemory reads the
// variables as StoreToFile does, into `memoryValues` instead of a file, for the comparison.
enum class Operation : std::int16_t {
    StoreToFile = 1,
    LoadFromFile = 2,
    ProgramDownload = 3,
    ProgramUpload = 4,
    ReadMemory = 5
};

// A variable as the controller answered it: "I7" or "V120", and its value.
struct VariableValue {
    std::string name;
    std::int32_t value = 0;
    bool operator==(const VariableValue&) const = default;
};

inline constexpr int kFullBar = 10000;
inline constexpr int kLastIVariable = 48;
inline constexpr int kLastVVariable = 248;

// What a caller sets before the dialog is shown and reads after it has closed. They outlive
// the dialog's showings; a load resets only `operationResult` and `totalProgLine`.
struct TransferMembers {
    std::int16_t operationType = 0;
    std::string fileName;
    std::int16_t ProgramNumber = 0;
    std::string programStr;
    std::int16_t operationResult = 0;
    std::int32_t totalProgLine = 0;
    std::vector<VariableValue> memoryValues; // out (operation 5)
};

// What a tick needs of the dialog around it: the exchange over the open link, the three
// texts and the bar, and a message box with OK only.
class TransferHost {
public:
    virtual ~TransferHost() = default;
    // As the command exchange: `command` is left cleaned; false when the exchange failed.
    virtual bool exchange(std::string& command, std::string& reply) = 0;
    virtual void showProgress(int value) = 0;
    virtual void showProgressLabel(const std::string& text) = 0;
    virtual void showStatText(const std::string& text) = 0;
    virtual void tell(const std::string& message) = 0;
};

// A line of program text as it goes to the controller: nothing from the first ';' on, no
// blanks, no control characters (tabs included).
std::string CleanProgramLine(const std::string& line);

// The fourth comma-separated field of a program status reply, counted from one.
std::string FourthField(const std::string& reply);

// One transfer, one small unit of work a tick, so that the dialog stays responsive.
class TransferMachine {
public:
    explicit TransferMachine(TransferMembers& members) : m_(members) {}

    // The start values of a new showing.
    void reset();

    // Does the current state once. Returns true when the dialog must close at once: the
    // transfer could not go on (a file that does not open, a variable that does not read).
    bool tick(TransferHost& host);

    // The question of Cancel in the present state, or nothing where Cancel does nothing.
    std::optional<std::string> cancelQuestion() const;
    // Cancel answered Yes: ends the transfer as its operation requires.
    void cancel(TransferHost& host);

    bool transferDone() const { return transferDone_; }
    int transferState() const { return transferState_; }
    int progValue() const { return progValue_; }
    int progStep() const { return progStep_; }

private:
    bool readMemory(TransferHost& host);
    bool loadFromFile(TransferHost& host);
    void programDownload(TransferHost& host);
    void programUpload(TransferHost& host);
    bool readVariable(TransferHost& host, char letter, int& index, int last, int step, bool limited);
    void finishFileTransfer(TransferHost& host, const std::string& message);
    void addProgress(TransferHost& host, int step, bool limited);
    void send(TransferHost& host, std::string command);

    TransferMembers& m_;
    int transferState_ = 1;
    int progValue_ = 0;
    int progStep_ = 0;
    int iVarIndex_ = 1;
    int vVarIndex_ = 1;
    std::size_t charIndex_ = 0;
    std::int64_t uploadLine_ = 1;
    std::string lineBuffer_;
    bool transferDone_ = false;
    DataFileWriter writer_;
    DataFileReader reader_;
};

} // namespace marlune::transfer
