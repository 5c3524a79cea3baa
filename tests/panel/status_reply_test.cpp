#include <gtest/gtest.h>

#include "panel/status_reply.h"

namespace marlune::panel {
namespace {

// A whole reply with every field told apart by its value: field n holds "f<n>".
std::string WholeReply(char afterDio = '.', char afterLatch = '.')
{
    std::string reply = "@";
    for (int n = 1; n <= 28; ++n) {
        reply += "f" + std::to_string(n);
        if (n == 17)
            reply += afterDio;
        else if (n == 28)
            reply += afterLatch;
        else
            reply += ',';
    }
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

TEST(StatusReply, SplitsAllTwentyEightFieldsInOrder)
{
    for (char dio : {'.', ','}) {
        const auto fields = SplitStatusReply(WholeReply(dio, ','));
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
    std::string reply = WholeReply();
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

TEST(StatusReply, FieldsBehindTheLastAreIgnored)
{
    const auto fields = SplitStatusReply(WholeReply() + "99,98,");
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->field[27], "f28");
}

} // namespace
} // namespace marlune::panel
