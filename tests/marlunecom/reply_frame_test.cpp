#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marlune::marlunecom {
namespace {

constexpr char kUntouched = '\x55';

class WriteReplyFrameTest : public ::testing::TestWithParam<std::size_t> {};

TEST_P(WriteReplyFrameTest, TerminatesWhereItFitsAndOtherwiseFillsTheBuffer)
{
    const std::size_t length = GetParam();
    std::string text(length, 'x');
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<char>('a' + i % 26);
    std::vector<char> buffer(link::kReceiveBufferSize + 1, kUntouched);

    WriteReplyFrame(text, buffer.data());

    const auto copied = std::min(length, link::kReceiveBufferSize);
    EXPECT_EQ(std::string(buffer.data(), copied), text.substr(0, copied));
    if (length < link::kReceiveBufferSize) {
        EXPECT_EQ(buffer[length], kReplyTerminator);
        EXPECT_EQ(buffer[length + 1], kUntouched);
    }
    EXPECT_EQ(buffer[link::kReceiveBufferSize], kUntouched) << "wrote past the receive buffer";
}

INSTANTIATE_TEST_SUITE_P(Lengths, WriteReplyFrameTest,
                         ::testing::Values(0, 2, link::kReceiveBufferSize - 1, link::kReceiveBufferSize,
                                           link::kReceiveBufferSize + 1000));

struct CommandCase {
    std::string frame;
    std::string command;
    bool complete;
};

class CommandOfFrameTest : public ::testing::TestWithParam<CommandCase> {};

TEST_P(CommandOfFrameTest, TakesTheBytesBeforeTheFirstCr)
{
    const auto& [frame, command, complete] = GetParam();
    const auto result = CommandOfFrame(frame);
    EXPECT_EQ(result.command, command);
    EXPECT_EQ(result.complete, complete);
}

INSTANTIATE_TEST_SUITE_P(Frames, CommandOfFrameTest,
                         ::testing::Values(CommandCase{"???\r", "???", true}, CommandCase{"\r", "", true},
                                           CommandCase{"X1\rY2\r", "X1", true}, CommandCase{"A\tB\r", "A\tB", true},
                                           CommandCase{"V1", "V1", false}, CommandCase{"", "", false}));

TEST(RequestFrameTest, StopsAtTheNulOrTheEndOfTheSendBuffer)
{
    const char withNul[] = "LIST\r\0junk";
    EXPECT_EQ(RequestFrame(withNul), "LIST\r");

    const std::string full(link::kSendBufferSize + 10, 'Z');
    EXPECT_EQ(RequestFrame(full.c_str()).size(), link::kSendBufferSize);
}

} // namespace
} // namespace marlune::marlunecom
