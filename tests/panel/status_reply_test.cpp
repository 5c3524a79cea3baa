#include <gtest/gtest.h>

#include "panel/main_control.h"
#include "panel/status_reply.h"

namespace marlune::panel {
namespace {

// A whole reply with every field told apart by its value: field n holds "f<n>". The digital I/O
// word and the latches end at `terminator`.
std::string WholeReply(char terminator)
{
    std::string reply = "@";
    for (int n = 1; n <= 28; ++n)
        reply += "f" + std::to_string(n) + (n == 17 || n == 28 ? terminator : ',');
    return reply;
}

std::vector<int> Completed(const StatusFields& fields)
{
    std::vector<int> numbers;
    for (int n = 1; n <= kStatusFields; ++n) {
        if (fields.field[static_cast<std::size_t>(n - 1)])
            numbers.push_back(n);
    }
    return numbers;
}

TEST(StatusReply, SplitsAllTwentyEightFieldsInOrderAndIgnoresWhatFollows)
{
    for (char terminator : {'.', ','}) {
        const auto fields = SplitStatusReply(WholeReply(terminator) + "99,98,");
        ASSERT_TRUE(fields);
        for (int n = 1; n <= 28; ++n)
            EXPECT_EQ(fields->field[static_cast<std::size_t>(n - 1)], "f" + std::to_string(n));
    }
}

TEST(StatusReply, OnlyARecordThatBeginsWithAtCounts)
{
    EXPECT_FALSE(SplitStatusReply(""));
    EXPECT_FALSE(SplitStatusReply("?ERR"));
    EXPECT_FALSE(SplitStatusReply(" @1,"));
    const auto alone = SplitStatusReply("@");
    ASSERT_TRUE(alone);
    EXPECT_TRUE(Completed(*alone).empty());
}

TEST(StatusReply, AShortReplyCompletesOnlyWholeFields)
{
    const auto fields = SplitStatusReply("@1,2,3");
    ASSERT_TRUE(fields);
    EXPECT_EQ(Completed(*fields), (std::vector<int>{1, 2}));
    EXPECT_EQ(fields->field[1], "2");
}

TEST(StatusReply, TheLastFieldMustBeTerminatedToo)
{
    std::string reply = WholeReply('.');
    reply.pop_back();
    const auto fields = SplitStatusReply(reply);
    ASSERT_TRUE(fields);
    EXPECT_EQ(Completed(*fields).size(), 27u);
    EXPECT_FALSE(fields->field[27]);
}

TEST(StatusReply, AGroupThatCannotCompleteLeavesItsPlaceToTheNextGroup)
{
    // The texts of group 1 never meet a comma after field 2; the axis words cannot either. The
    // digital I/O word, which also ends at a point, then takes "3.5" up to its point: field 17 is "3".
    const auto fields = SplitStatusReply("@1,2,3.5");
    ASSERT_TRUE(fields);
    EXPECT_EQ(Completed(*fields), (std::vector<int>{1, 2, 17}));
    EXPECT_EQ(fields->field[16], "3");
    const auto lines = SplitStatusReply("@1,2,3.5.6");
    ASSERT_TRUE(lines);
    EXPECT_EQ(Completed(*lines), (std::vector<int>{1, 2, 17, 23})) << "the program lines end at a point too";
    EXPECT_EQ(lines->field[22], "5");
}

TEST(StatusText, MotionOutranksErrorsAndOnlyKnownBitsShow)
{
    const std::pair<std::int32_t, const char*> cases[] = {
            {0x00F8, "Idle"},      {0x0101, "Accelerating"}, {0x0302, "Decelerating"}, {0x0C04, "Constant"},
            {0x0700, "Err+L"},     {0x0600, "Err-L"},        {0x1C00, "ErrAlarm"},     {0x1800, "ErrEnc"},
            {0x1000, "ErrEncTry"}, {0xE000, "Idle"}};
    for (const auto& [word, text] : cases)
        EXPECT_EQ(MainControl::GetStatusText(word), text) << word;
}

} // namespace
} // namespace marlune::panel
