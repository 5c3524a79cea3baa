#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace marlune::marlunecom {
namespace {

constexpr std::size_t kSize = link::kReceiveBufferSize;

TEST(ReplyFrameTest, WritesTheTerminatorWhereItFitsAndOtherwiseFillsTheBuffer)
{
    for (const std::size_t length : {std::size_t{0}, std::size_t{2}, kSize - 1, kSize, kSize + 1000}) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text.push_back(static_cast<char>('a' + i % 26));
        std::vector<char> buffer(kSize + 1, '\x55');
        WriteReplyFrame(text, buffer.data());
        std::string expected = text.substr(0, kSize) + (length < kSize ? std::string{kReplyTerminator} : "");
        expected.resize(kSize + 1, '\x55'); // nothing written behind, nor past the buffer
        EXPECT_EQ(std::string(buffer.begin(), buffer.end()), expected) << length;
    }
}

TEST(ReplyFrameTest, TheCommandIsTheBytesBeforeTheFirstCrAndNeedsOne)
{
    const std::vector<std::tuple<std::string, std::string, bool>> frames = {
            {"???\r", "???", true},   {"\r", "", true},    {"X1\rY2\r", "X1", true},
            {"A\tB\r", "A\tB", true}, {"V1", "V1", false}, {"", "", false}};
    for (const auto& [frame, command, complete] : frames) {
        const auto [gotCommand, gotComplete] = CommandOfFrame(frame);
        EXPECT_EQ(gotCommand, command) << frame;
        EXPECT_EQ(gotComplete, complete) << frame;
    }
}

TEST(ReplyFrameTest, ARequestStopsAtItsNulOrTheEndOfTheSendBuffer)
{
    EXPECT_EQ(RequestFrame("LIST\r\0junk"), "LIST\r");
    const std::string full(link::kSendBufferSize + 10, 'Z');
    EXPECT_EQ(RequestFrame(full.c_str()).size(), link::kSendBufferSize);
}

} // namespace
} // namespace marlune::marlunecom
