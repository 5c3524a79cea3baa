#include "headless_fixture.h"

#include "link/controller_variables.h"

namespace marlune::link {

using testing::HeadlessFixture;
namespace {

TEST_F(HeadlessFixture, GetVarReadsOnlyWhileConnected)
{
    controller.setReply("I12", "4095");
    EXPECT_EQ(GetVar(12), 0);
    EXPECT_TRUE(frames().empty());
    Link().connected = true;
    EXPECT_EQ(GetVar(12), 4095);
    EXPECT_EQ(frames(), std::vector<std::string>{"I12\r"});
}

TEST_F(HeadlessFixture, AFractionIsRoundedHalfToEven)
{
    Link().connected = true;
    controller.setReply("I3", "12.5");
    EXPECT_EQ(GetVar(3), 12);
    controller.setReply("I3", "-7.5");
    EXPECT_EQ(GetVar(3), -8);
}

class FailedRead : public HeadlessFixture, public ::testing::WithParamInterface<const char*> {};

// A reply that is no number counts as a failed read, so that no form shows or later writes
// back a value that was never read.
TEST_P(FailedRead, ShowsOneMessageAndStopsTheFollowingReads)
{
    Link().connected = true;
    if (std::string(GetParam()) == "fail")
        controller.failNext("I1", 1);
    else
        controller.setReply("I1", GetParam());
    controller.setReply("I2", "7");
    EXPECT_EQ(GetVar(1), 0);
    EXPECT_FALSE(Link().connected);
    EXPECT_EQ(GetVar(2), 0);
    EXPECT_EQ(frames(), std::vector<std::string>{"I1\r"});
    EXPECT_EQ(messages(), std::vector<std::string>{"Error Get Var:I1"});
}

INSTANTIATE_TEST_SUITE_P(Replies, FailedRead, ::testing::Values("fail", "", "abc", "99999999999", "?ERR"));

TEST_F(HeadlessFixture, SetVarSendsWhateverTheFlagSaysAndReportsEachFailure)
{
    EXPECT_EQ(SetVar(12, -5), 1);
    controller.failNext("I13=100", 1);
    EXPECT_EQ(SetVar(13, 100), 0);
    EXPECT_EQ(SetVar(14, 0), 1);
    EXPECT_EQ(frames(), (std::vector<std::string>{"I12=-5\r", "I13=100\r", "I14=0\r"}));
    EXPECT_EQ(messages(), std::vector<std::string>{"Error Set Var:I13=100"});
    EXPECT_FALSE(Link().connected);
}

} // namespace
} // namespace marlune::link
