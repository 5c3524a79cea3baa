#include <gtest/gtest.h>

#include "link/exchange_log.h"
#include "tools/communication_log.h"

namespace marlune::tools {
namespace {

using F = link::ExchangeFailure;
constexpr std::int64_t kHour = 3600LL * 1'000'000;

struct Shown {
    link::ExchangeRecord record;
    const char* line;
    const char* fileLine;
};

class ExchangeLines : public ::testing::TestWithParam<Shown> {};

// One line each, control bytes escaped; the time of day wraps at midnight; a duration below a
// millisecond to the microsecond; a failure marked with its reason, and without a duration
// when nothing was sent.
TEST_P(ExchangeLines, ShowOneExchangeOnOneLine)
{
    EXPECT_EQ(ExchangeLine(GetParam().record), GetParam().line);
    EXPECT_EQ(ExchangeFileLine(GetParam().record), GetParam().fileLine);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Records, ExchangeLines, ::testing::Values(
    Shown{{10 * kHour + 7'123'000, "X5000\r", "OK", 1234, F::None},
          "10:00:07.123  X5000  ->  OK  1.2 ms", "10:00:07.123\tX5000\tOK\t1.2 ms\t"},
    Shown{{25 * kHour + 61'000'999, "LIST\r", "A\tB\r\n\\\x01", 999, F::None},
          "01:01:01.000  LIST  ->  A\\tB\\r\\n\\\\\\x01  0.999 ms", "01:01:01.000\tLIST\tA\\tB\\r\\n\\\\\\x01\t0.999 ms\t"},
    Shown{{0, "???\r", "", 2'000'400, F::TimedOut},
          "00:00:00.000  !! ???  ->  time-out  2000.4 ms", "00:00:00.000\t???\t\t2000.4 ms\ttime-out"},
    Shown{{0, "V1\r", "", 0, F::Refused},
          "00:00:00.000  !! V1  ->  refused, not sent: no working link", "00:00:00.000\tV1\t\t0.000 ms\trefused, not sent: no working link"}));
// clang-format on

} // namespace
} // namespace marlune::tools
