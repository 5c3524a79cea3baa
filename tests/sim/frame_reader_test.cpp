#include "frame_reader.h"

#include <gtest/gtest.h>

namespace marlune::sim {
namespace {

std::vector<std::string> Frames(FrameReader& reader)
{
    std::vector<std::string> out;
    while (auto frame = reader.take())
        out.push_back(frame->oversized ? "<oversized>" : frame->bytes);
    return out;
}

TEST(FrameReader, CutsAtCarriageReturnAndIgnoresLineFeed)
{
    FrameReader reader;
    reader.feed("???\r\nHSPD\n1000\rV1", 0);
    EXPECT_EQ(Frames(reader), (std::vector<std::string>{"???", "HSPD1000"}));
    EXPECT_TRUE(reader.hasPartial());
    reader.feed("\r", 0);
    EXPECT_EQ(Frames(reader), std::vector<std::string>{"V1"});
}

TEST(FrameReader, KeepsBinaryBytesAndEmptyFrames)
{
    FrameReader reader;
    reader.feed(std::string_view("\x00\xff\r\r", 4), 0);
    EXPECT_EQ(Frames(reader), (std::vector<std::string>{std::string("\x00\xff", 2), ""}));
}

TEST(FrameReader, DropsAnOversizedFrameUpToItsEndAndGoesOn)
{
    FrameReader reader(8);
    reader.feed("123456789", 0);
    reader.feed("abcdef\rOK\r", 0);
    EXPECT_EQ(Frames(reader), (std::vector<std::string>{"<oversized>", "OK"}));
    reader.feed("12345678\r", 0);
    EXPECT_EQ(Frames(reader), std::vector<std::string>{"12345678"}) << "the limit itself is allowed";
}

TEST(FrameReader, ThrowsAwayAStalePartialFrame)
{
    FrameReader reader;
    reader.feed("HSP", 100);
    reader.dropStale(50);
    EXPECT_TRUE(reader.hasPartial());
    reader.dropStale(200);
    EXPECT_FALSE(reader.hasPartial());
    reader.feed("???\r", 300);
    EXPECT_EQ(Frames(reader), std::vector<std::string>{"???"});
}

} // namespace
} // namespace marlune::sim
