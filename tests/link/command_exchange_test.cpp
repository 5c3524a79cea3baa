#include "headless_fixture.h"

#include "link/command_exchange.h"

namespace marlune::link {

using testing::HeadlessFixture;
namespace {

struct Cleaning {
    const char* typed;
    const char* frame; // what goes on the wire, CR included
};

class CommandCleaning : public HeadlessFixture, public ::testing::WithParamInterface<Cleaning> {};

TEST_P(CommandCleaning, SendsTheCleanedCommandWithOneCr)
{
    std::string command = GetParam().typed;
    std::string reply;
    EXPECT_TRUE(SendCommand(command, reply));
    EXPECT_EQ(frames(), std::vector<std::string>{GetParam().frame});
    EXPECT_TRUE(messages().empty());
}

INSTANTIATE_TEST_SUITE_P(Commands, CommandCleaning,
                         ::testing::Values(Cleaning{"X 1000 ; go", "X1000\r"}, Cleaning{"A=\"B C\"", "A=\"BC\"\r"},
                                           Cleaning{"A=\"x;y\"", "A=\"x\r"}, Cleaning{"list prog 1", "listprog1\r"},
                                           Cleaning{"X\t1", "X\t1\r"}, Cleaning{"X1\rY2", "X1\r"}, Cleaning{"\r", "\r"},
                                           Cleaning{"#V1 = 2", "#V1=2\r"}));

TEST_F(HeadlessFixture, ACommentAloneSendsNothingAndKeepsTheReply)
{
    std::string command = "   ;just a comment";
    std::string reply = "before";
    EXPECT_TRUE(SendCommand(command, reply));
    EXPECT_EQ(command, "");
    EXPECT_EQ(reply, "before");
    EXPECT_TRUE(frames().empty());
}

TEST_F(HeadlessFixture, ThirtyTwoCharactersAfterCleaningIsTheLimit)
{
    std::string reply;
    std::string exact(32, 'A');
    EXPECT_TRUE(SendCommand(exact, reply));
    std::string padded = std::string(14, 'B') + std::string(28, ' ') + std::string(18, 'B'); // 60 typed, 32 clean
    EXPECT_TRUE(SendCommand(padded, reply));
    std::string tooLong(33, 'C');
    reply = "kept";
    EXPECT_FALSE(SendCommand(tooLong, reply));
    EXPECT_EQ(reply, "kept");
    EXPECT_EQ(frames(), (std::vector<std::string>{std::string(32, 'A') + "\r", std::string(32, 'B') + "\r"}));
    EXPECT_EQ(messages(), std::vector<std::string>{"Command too long: " + std::string(33, 'C')});
    EXPECT_EQ(platform.messages().at(0).request.title, "Marlune Desk");
}

struct Unframing {
    const char* command;
    std::string replyBytes;
    std::string text;
};

class ReplyUnframing : public HeadlessFixture, public ::testing::WithParamInterface<Unframing> {};

TEST_P(ReplyUnframing, StopsAtNulOr04AndDropsLineEndsUnlessListing)
{
    controller.setDefaultReply(GetParam().replyBytes);
    std::string command = GetParam().command;
    std::string reply = "old";
    EXPECT_TRUE(SendCommand(command, reply));
    EXPECT_EQ(reply, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Replies, ReplyUnframing,
                         ::testing::Values(Unframing{"V1", "OK\r\n\x04", "OK"},
                                           Unframing{"LISTPROG1", "OK\r\n\x04", "OK\r\n"},
                                           Unframing{"plist", "A\r\nB\r\n\x04", "A\r\nB\r\n"},
                                           Unframing{"V1",
                                                     "A\x04"
                                                     "B",
                                                     "A"},
                                           Unframing{"V1", "", ""}, Unframing{"V1", "caf\xE9\x04", "caf\xE9"}));

TEST_F(HeadlessFixture, AReplyThatFillsTheBufferIsReadToItsEnd)
{
    controller.setDefaultReply(std::string(kReceiveBufferSize, 'R'));
    std::string command = "LIST";
    std::string reply;
    EXPECT_TRUE(SendCommand(command, reply));
    EXPECT_EQ(reply, std::string(kReceiveBufferSize, 'R'));
}

TEST_F(HeadlessFixture, AFailedOrImpossibleExchangeGivesTheFailureText)
{
    std::string reply;
    controller.failNext("V1", 1);
    std::string command = "V1";
    EXPECT_FALSE(SendCommand(command, reply));
    EXPECT_EQ(reply, kExchangeFailedText);
    EXPECT_EQ(frames().size(), 1u) << "the frame went out";

    Link().linkKind = 0;
    reply.clear();
    command = "V1";
    EXPECT_FALSE(SendCommand(command, reply));
    EXPECT_EQ(reply, kExchangeFailedText);
    EXPECT_EQ(frames().size(), 1u) << "no library call without a known kind";
    EXPECT_FALSE(Link().connected) << "the exchange never touches the connected flag";
}

TEST_F(HeadlessFixture, ThePairRepeatsAHundredTimesOnTheVirtualComPortOnly)
{
    std::string first = "EOX=1";
    std::string second = "EOX = 0";
    std::string reply;
    Link().linkKind = 3;
    EXPECT_TRUE(SendCommandPair(first, second, reply));
    const auto sent = frames();
    ASSERT_EQ(sent.size(), 200u);
    EXPECT_EQ(sent.front(), "EOX=1\r");
    EXPECT_EQ(sent[1], "EOX=0\r");
    EXPECT_EQ(sent.back(), "EOX=0\r");

    Link().linkKind = 2;
    first = "EOX=1";
    second = "EOX=0";
    EXPECT_TRUE(SendCommandPair(first, second, reply));
    EXPECT_EQ(frames().size(), 201u);
    EXPECT_EQ(frames().back(), "EOX=1\r");
}

} // namespace
} // namespace marlune::link
