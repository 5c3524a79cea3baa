#include <gtest/gtest.h>

#include "panel/main_control.h"
#include "panel/status_reply.h"

namespace marlune::panel {
namespace {

// A whole reply with every field told apart by its value: field n holds "f<n>". The digital I/O
// word and the fields from the program lines on end at `terminator`.
std::string WholeReply(char terminator)
{
    std::string reply = "@";
    for (int n = 1; n <= 28; ++n)
        reply += "f" + std::to_string(n) + (n == 17 || n >= 23 ? terminator : ',');
    return reply;
}

// The completed fields as "n=text ...", or "none" for what is no record.
std::string Completed(const std::string& reply)
{
    const auto fields = SplitStatusReply(reply);
    if (!fields)
        return "none";
    std::string out;
    for (int n = 1; n <= kStatusFields; ++n) {
        if (const auto& field = fields->field[static_cast<std::size_t>(n - 1)])
            out += std::to_string(n) + "=" + *field + " ";
    }
    return out;
}

// A record begins with "@" and completes only whole fields: the last one too must be terminated.
// A group that cannot complete leaves its place to the next: the texts of group 1 never meet a
// comma after field 2, nor can the axis words, so the digital I/O word, which also ends at a point,
// takes "3.5" up to its point; the program lines end at a point too.
TEST(StatusReply, CompletesOnlyWholeFieldsOfARecordThatBeginsWithAt)
{
    std::string whole;
    for (int n = 1; n <= 28; ++n)
        whole += std::to_string(n) + "=f" + std::to_string(n) + " ";
    std::string unterminated = WholeReply('.');
    unterminated.pop_back();
    const std::pair<std::string, std::string> rows[] = {{WholeReply('.') + "99,98,", whole},
                                                        {WholeReply(',') + "99,98,", whole},
                                                        {unterminated, whole.substr(0, whole.find("28="))},
                                                        {"", "none"},
                                                        {"?ERR", "none"},
                                                        {" @1,", "none"},
                                                        {"@", ""},
                                                        {"@1,2,3", "1=1 2=2 "},
                                                        {"@1,2,3.5", "1=1 2=2 17=3 "},
                                                        {"@1,2,3.5.6", "1=1 2=2 17=3 23=5 "}};
    for (const auto& [reply, completed] : rows)
        EXPECT_EQ(Completed(reply), completed) << reply;
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
