#include "headless_fixture.h"

#include "link/command_exchange.h"
#include "link/controller_variables.h"

namespace marlune::link {

using testing::HeadlessFixture;
namespace {

using Cleaning = std::pair<std::string, std::string>; // typed, and the frame that goes out or the message

class CommandCleaning : public HeadlessFixture, public ::testing::WithParamInterface<Cleaning> {};

TEST_P(CommandCleaning, SendsTheCleanedCommandWithOneCrUpToThirtyTwoCharacters)
{
    const auto& [typed, out] = GetParam();
    const bool refused = out.starts_with("Command too long: ");
    std::string command = typed;
    std::string reply = "before";
    EXPECT_EQ(SendCommand(command, reply), !refused);
    EXPECT_EQ(frames(), (out.empty() || refused ? std::vector<std::string>{} : std::vector<std::string>{out}));
    EXPECT_EQ(messages(), (refused ? std::vector<std::string>{out} : std::vector<std::string>{}));
    EXPECT_TRUE(!frames().empty() || reply == "before") << "nothing sent, reply untouched";
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, CommandCleaning, ::testing::ValuesIn(std::vector<Cleaning>{
    {"X 1000 ; go", "X1000\r"}, {"A=\"B C\"", "A=\"BC\"\r"}, {"A=\"x;y\"", "A=\"x\r"}, {"list prog 1", "listprog1\r"},
    {"X\t1", "X\t1\r"}, {"X1\rY2", "X1\r"}, {"\r", "\r"}, {"#V1 = 2", "#V1=2\r"}, {"   ;just a comment", ""},
    {std::string(32, 'A'), std::string(32, 'A') + "\r"},
    {std::string(14, 'B') + std::string(28, ' ') + std::string(18, 'B'), std::string(32, 'B') + "\r"},
    {std::string(33, 'C') + " ;", "Command too long: " + std::string(33, 'C')}}));
// clang-format on

struct Unframing {
    const char* command;
    std::optional<std::string> replyBytes; // nullopt: the exchange fails
    std::string text;
    std::int16_t kind = 1;
};

class ReplyUnframing : public HeadlessFixture, public ::testing::WithParamInterface<Unframing> {};

// A failed exchange, or one of no known kind (which makes no library call), gives the failure
// text; neither touches the connected flag.
TEST_P(ReplyUnframing, StopsAtNulOr04OrTheBufferEndAndDropsLineEndsUnlessListing)
{
    const Unframing& u = GetParam();
    if (u.replyBytes)
        controller.setDefaultReply(*u.replyBytes);
    else
        controller.failNext(u.command, 1);
    Link().linkKind = u.kind;
    Link().connected = true;
    std::string command = u.command;
    std::string reply = "old";
    EXPECT_EQ(SendCommand(command, reply), u.text != kExchangeFailedText);
    EXPECT_EQ(reply, u.text);
    EXPECT_EQ(frames().size(), u.kind == 1 ? 1u : 0u);
    EXPECT_TRUE(Link().connected);
}

INSTANTIATE_TEST_SUITE_P(
        Replies, ReplyUnframing,
        ::testing::Values(Unframing{"V1", "OK\r\n\x04", "OK"}, Unframing{"LISTPROG1", "OK\r\n\x04", "OK\r\n"},
                          Unframing{"plist", "A\r\nB\r\n\x04", "A\r\nB\r\n"}, Unframing{"V1", "A\x04xB", "A"},
                          Unframing{"V1", "", ""}, Unframing{"V1", "caf\xE9\x04", "caf\xE9"},
                          Unframing{"LIST", std::string(kReceiveBufferSize, 'R'), std::string(kReceiveBufferSize, 'R')},
                          Unframing{"V1", std::nullopt, kExchangeFailedText},
                          Unframing{"V1", "OK\x04", kExchangeFailedText, 0}));

using Read = std::pair<const char*, std::int32_t>; // the reply (nullptr: the exchange fails), the value (0: failed)

class Reads : public HeadlessFixture, public ::testing::WithParamInterface<Read> {};

// Only while connected. A failed read shows one message and stops the reads that follow, so
// that no form shows or later writes back a value that was never read.
TEST_P(Reads, GetVarRoundsHalfToEvenOrFailsOnce)
{
    const auto [replyText, value] = GetParam();
    const bool read = value != 0;
    if (replyText != nullptr)
        controller.setReply("I1", replyText);
    else
        controller.failNext("I1", 1);
    controller.setReply("I2", "7");
    EXPECT_EQ(GetVar(1), 0);
    EXPECT_TRUE(frames().empty());
    Link().connected = true;
    EXPECT_EQ(GetVar(1), value);
    EXPECT_EQ(Link().connected, read);
    EXPECT_EQ(GetVar(2), read ? 7 : 0);
    EXPECT_EQ(frames(), (read ? std::vector<std::string>{"I1\r", "I2\r"} : std::vector<std::string>{"I1\r"}));
    EXPECT_EQ(messages(), read ? std::vector<std::string>{} : std::vector<std::string>{"Error Get Var:I1"});
}

INSTANTIATE_TEST_SUITE_P(Replies, Reads,
                         ::testing::Values(Read{"4095", 4095}, Read{"12.5", 12}, Read{"-7.5", -8}, Read{nullptr, 0},
                                           Read{"", 0}, Read{"abc", 0}, Read{"99999999999", 0}, Read{"?ERR", 0}));

TEST_F(HeadlessFixture, SetVarSendsWhateverTheFlagSaysAndReportsEachFailure)
{
    EXPECT_EQ(SetVar(12, -5), 1);
    controller.failNext("I13=100", 1);
    EXPECT_EQ(SetVar(13, 100), 0);
    EXPECT_EQ(SetVar(14, 0), 1);
    EXPECT_EQ(frames(), (std::vector<std::string>{"I12=-5\r", "I13=100\r", "I14=0\r"}));
    EXPECT_EQ(messages(), std::vector<std::string>{"Error Set Var:I13=100"});
}

} // namespace
} // namespace marlune::link
