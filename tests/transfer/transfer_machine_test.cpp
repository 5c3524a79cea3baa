#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>

#include "forms/files.h"
#include "transfer/compare_memory.h"
#include "transfer/transfer_machine.h"

namespace marlune::transfer {
namespace {

// Records what a transfer does to the dialog around it; replies come from `answer`.
struct RecordingHost final : TransferHost {
    std::function<std::string(const std::string&)> answer = [](const std::string&) { return "OK"; };
    std::vector<std::string> sent;
    std::vector<std::string> messages;
    std::string statText;
    int bar = 0;

    bool exchange(std::string& command, std::string& reply) override
    {
        sent.push_back(command);
        reply = answer(command);
        return true;
    }
    void showProgress(int value) override { bar = value; }
    void showProgressLabel(const std::string&) override {}
    void showStatText(const std::string& text) override { statText = text; }
    void tell(const std::string& message) override { messages.push_back(message); }
};

class TransferMachineTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        dir_ = std::filesystem::temp_directory_path()
               / ("marlune-transfer-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(dir_);
        std::filesystem::create_directories(dir_);
        machine.reset();
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }

    std::string path(const std::string& name) const { return (dir_ / name).string(); }
    // Ticks until the transfer is done or the dialog must close; the number of ticks.
    int runToEnd(int limit = 100000)
    {
        for (int ticks = 1; ticks <= limit; ++ticks) {
            if (machine.tick(host) || machine.transferDone())
                return ticks;
        }
        ADD_FAILURE() << "the transfer did not end";
        return limit;
    }

    TransferMembers members;
    TransferMachine machine{members};
    RecordingHost host;

private:
    std::filesystem::path dir_;
};

TEST_F(TransferMachineTest, DownloadStepIsRoundedHalfToEvenAndAtLeastOne)
{
    const std::pair<std::size_t, int> rows[] = {{0, 10000}, {3, 3333}, {6, 1667}, {32, 312}, {20000, 1}};
    for (const auto& [length, step] : rows) {
        members.operationType = 3;
        members.programStr.assign(length, 'A');
        machine.reset();
        machine.tick(host);
        EXPECT_EQ(machine.progStep(), step) << length << " characters";
    }
}

// A line loses its comment, its blanks and the control characters up to 20; one left empty is not sent.
TEST_F(TransferMachineTest, DownloadSendsEachCleanedLineOnceAndTheLastLineAsItStands)
{
    members.operationType = 3;
    members.ProgramNumber = 2;
    members.programStr = "X 100 ;out\r\n\r\n  ;note\r\nA\x14"
                         "B\x15 \xE9\r\n\tY2\nZ 3 ;raw";
    EXPECT_EQ(runToEnd(), 1 + static_cast<int>(members.programStr.size()) + 2);
    EXPECT_EQ(host.sent, (std::vector<std::string>{"CLOSE", "OPEN PROG 2", "CLEAR", "X100", "AB\x15\xE9", "Y2",
                                                   "Z 3 ;raw", "CLOSE"}));
    EXPECT_EQ(host.statText, "Y2");
    EXPECT_EQ(host.bar, 10000);
}

// The fourth field of the program status is the number of lines; one that cannot be read fetches one line.
// A line that ends in a line feed is kept as it came.
TEST_F(TransferMachineTest, UploadFetchesTheLinesTheProgramStatusCounts)
{
    const std::pair<std::string, int> rows[] = {{"1,2", 1},    {"1,2,3,", 1},   {"1,2,3,x", 1}, {"1,2,3,-4", 1},
                                                {"a,b,c,", 1}, {",,,7,8,9", 7}, {"1,2,3,4", 4}, {"1,0,12,345,0", 345}};
    for (const auto& row : rows) {
        members.operationType = 4;
        host.answer = [&](const std::string& command) { return command.starts_with("PSTAT") ? row.first : "L\n"; };
        machine.reset();
        runToEnd();
        EXPECT_EQ(members.totalProgLine, row.second) << row.first;
        EXPECT_EQ(members.programStr.size(), 2u * static_cast<std::size_t>(row.second)) << row.first;
    }
}

// The lines go to a ".part" file that replaces the target only when the last variable was read.
TEST_F(TransferMachineTest, StoreReplacesTheEarlierFileOnlyWhenEveryReplyIsANumber)
{
    members.operationType = 1;
    members.fileName = path("memory.dat");
    std::ofstream(members.fileName) << "earlier";
    for (const std::string bad : {"Error in Send Receive!", "4294967296"}) {
        host.answer = [&](const std::string& command) { return command == "V3" ? bad : "1"; };
        host.messages.clear();
        machine.reset();
        runToEnd();
        EXPECT_FALSE(machine.transferDone());
        EXPECT_EQ(host.messages, std::vector<std::string>{"Reading V3 failed: " + bad});
        EXPECT_EQ(forms::ReadFileBytes(members.fileName), "earlier");
        EXPECT_FALSE(std::filesystem::exists(members.fileName + ".part"));
    }
    host.answer = [](const std::string&) { return "1"; };
    machine.reset();
    runToEnd();
    EXPECT_TRUE(forms::ReadFileBytes(members.fileName).value_or("").ends_with("\r\nV248=1\r\n"));
    EXPECT_FALSE(std::filesystem::exists(members.fileName + ".part"));
}

// The lines are held until the file closes; a close that cannot write them (here a limit on the
// size of files, on a machine a full disk) keeps the earlier file and leaves no ".part".
TEST_F(TransferMachineTest, AStoreThatCannotBeWrittenOutKeepsTheEarlierFile)
{
    members.operationType = 1;
    members.fileName = path("memory.dat");
    std::ofstream(members.fileName) << "earlier";
    host.answer = [](const std::string&) { return "1"; };
    const auto onTooLarge = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{64, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    runToEnd();
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, onTooLarge);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_TRUE(host.messages[0].starts_with("The data file " + members.fileName + " could not be written: "));
    EXPECT_EQ(forms::ReadFileBytes(members.fileName), "earlier");
    EXPECT_FALSE(std::filesystem::exists(members.fileName + ".part"));
}

// A line ends at CR LF, LF, CR or the end of the file.
TEST_F(TransferMachineTest, LoadSendsEveryLineWhateverItsEnd)
{
    members.operationType = 2;
    members.fileName = path("memory.dat");
    std::ofstream(members.fileName, std::ios::binary) << "V1=1\r\nV2=2\nV3=3\rV4=4";
    runToEnd();
    EXPECT_EQ(host.sent, (std::vector<std::string>{"V1=1", "V2=2", "V3=3", "V4=4"}));
}

// A store's file in a missing folder, and a load's that is a folder, which would open and read
// as empty.
TEST_F(TransferMachineTest, AFileThatDoesNotOpenIsNamedAndClosesTheDialog)
{
    for (const auto& [operation, name] : {std::pair(1, "no-such-folder/memory.dat"), std::pair(2, "")}) {
        members.operationType = static_cast<std::int16_t>(operation);
        members.fileName = path(name);
        machine.reset();
        host.messages.clear();
        EXPECT_TRUE(machine.tick(host));
        ASSERT_EQ(host.messages.size(), 1u);
        EXPECT_NE(host.messages[0].find(members.fileName), std::string::npos);
    }
    EXPECT_TRUE(host.messages[0].ends_with(": it is a folder"));
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(TransferMachineTest, CancelAsksOnlyWhileTheTransferRuns)
{
    members.fileName = path("memory.dat");
    std::ofstream(members.fileName) << "I1=1\r\n";
    // Per operation: the state after each tick, and whether Cancel asks there.
    const std::vector<std::pair<std::int16_t, std::vector<bool>>> rows = {
            {1, {false, true}}, {2, {false, true, true, false}}, {3, {false, true, false}}, {4, {true, true}}};
    for (const auto& [operation, asks] : rows) {
        members.operationType = operation;
        members.programStr.clear();
        machine.reset();
        for (std::size_t step = 0; step < asks.size(); ++step) {
            EXPECT_EQ(machine.cancelQuestion().has_value(), asks[step])
                    << "operation " << operation << " step " << step;
            machine.tick(host);
        }
    }
    members.operationType = 1;
    machine.reset();
    host.answer = [](const std::string&) { return "1"; };
    for (int tick = 0; tick <= kLastIVariable + 1; ++tick)
        machine.tick(host);
    EXPECT_EQ(host.sent.back(), "V1") << "a store asks while it reads the V variables too";
    EXPECT_TRUE(machine.cancelQuestion().has_value());
}

// The file's values are what its playback would leave: the last assignment wins, in any case and
// with blanks and comments, of I and V variables only; only what differs is listed.
TEST_F(TransferMachineTest, TheComparisonSetsTheControllerAgainstWhatAPlaybackOfTheFileWouldLeave)
{
    std::ofstream(path("memory.dat"), std::ios::binary) << "I5=3\r\nV1=1\r\nv1 = 2 ;again\r\nV2=x\r\nX7=7\r\nV3=9";
    std::vector<VariableValue> values;
    EXPECT_EQ(ReadDataFileValues(path("memory.dat"), values), "");
    EXPECT_EQ(FindDifferences(values, {{"I5", 4}, {"V1", 2}, {"V2", 0}, {"V3", 8}, {"X7", 0}}),
              (std::vector<Difference>{{"I5", 3, 4}, {"V3", 9, 8}}));
}

} // namespace
} // namespace marlune::transfer
