#include "headless_fixture.h"

#include <chrono>
#include <cstring>
#include <optional>
#include <thread>
#include <tuple>

#include "link/command_exchange.h"
#include "link/exchange_log.h"

namespace marlune::link {

namespace {

TEST(ExchangeLogRing, KeepsTheLastTenThousandNumberedAndCountsWhatLeftIt)
{
    ExchangeLog log;
    EXPECT_EQ(log.newest(), 0u);
    EXPECT_EQ(log.oldest(), 1u);
    const std::uint64_t total = ExchangeLog::kCapacity + 5;
    for (std::uint64_t n = 1; n <= total; ++n)
        log.record(0, 2, "R" + std::to_string(n) + "\r", n == 3 ? std::string(3000, 'L') : "OK", ExchangeFailure::None);
    EXPECT_EQ(log.newest(), total);
    EXPECT_EQ(log.oldest(), 6u);
    EXPECT_EQ(log.at(6).request, "R6\r");
    // The slot of record 3 now holds record 10003, its long reply replaced.
    EXPECT_EQ(log.at(ExchangeLog::kCapacity + 3).request, "R10003\r");
    EXPECT_EQ(log.at(ExchangeLog::kCapacity + 3).reply, "OK");
    EXPECT_EQ(log.droppedAfter(0), 5u);
    EXPECT_EQ(log.droppedAfter(5), 0u);
    log.clear();
    EXPECT_EQ(log.oldest(), total + 1);
    log.record(0, 0, "V1\r", "7", ExchangeFailure::None);
    EXPECT_EQ(log.oldest(), log.newest());
    EXPECT_EQ(log.at(total + 1).request, "V1\r");
}

// Its own clock follows the steady clock, whatever it reads it through.
TEST(ExchangeLogClock, FollowsTheSteadyClock)
{
    using namespace std::chrono;
    const auto steady = [] { return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count(); };
    ExchangeLog log;
    const std::int64_t before = steady();
    const std::int64_t first = log.now();
    std::this_thread::sleep_for(20ms);
    const std::int64_t second = log.now();
    const std::int64_t after = steady();
    EXPECT_GE(second - first, 20'000 * 99 / 100);
    EXPECT_LE(second - first, (after - before) * 101 / 100);
}

// A library whose exchange answers with `reply`, or fails having noted why as our own links do.
struct NotingCom final : MarluneCom {
    std::optional<std::string> reply;
    ExchangeFailure noted = ExchangeFailure::None;

    std::int32_t open(std::int32_t, std::int32_t, char*) override { return 1; }
    std::int32_t close(std::int32_t, std::int32_t) override { return 1; }
    std::int32_t sendRecv(std::int32_t, std::int32_t, const char*, char* buffer) override
    {
        if (reply)
            std::memcpy(buffer, reply->data(), reply->size());
        else if (noted != ExchangeFailure::None)
            NoteExchangeFailure(noted);
        // A failure still carries bits above the low 16, which alone tell success.
        return reply ? 1 : 0x10000;
    }
};

struct Recorded {
    std::int16_t kind;
    std::string command;
    std::optional<std::string> reply; // nullopt: the exchange fails, with `noted` noted
    ExchangeFailure noted;
    ExchangeRecord expected;
};

class ExchangeRecording : public testing::HeadlessFixture, public ::testing::WithParamInterface<Recorded> {};

// One record per exchange, made or not: the request as sent, the reply to its 0x04 with the line
// ends kept, the time the request went out and how long the library took; a reason noted by an
// earlier call outside any exchange is not taken for this one's.
TEST_P(ExchangeRecording, RecordsEachExchangeWithTheReasonOfItsFailure)
{
    constexpr std::int64_t kTenOClock = 10LL * 3600 * 1'000'000;
    std::int64_t reading = 0;
    Log().setClock([&reading] { return reading += 1500; }, kTenOClock);
    NotingCom com;
    com.reply = GetParam().reply;
    com.noted = GetParam().noted;
    SetCom(&com);
    Link().linkKind = GetParam().kind;
    NoteExchangeFailure(ExchangeFailure::TimedOut);
    std::string command = GetParam().command;
    std::string reply;
    const std::uint64_t before = Log().newest();
    const ExchangeRecord& e = GetParam().expected;
    EXPECT_EQ(SendCommand(command, reply), e.failure == ExchangeFailure::None);
    ASSERT_EQ(Log().newest(), before + 1);
    const ExchangeRecord& got = Log().at(before + 1);
    EXPECT_EQ(std::tuple(got.timeOfDayMicros, got.request, got.reply, got.durationMicros, got.failure),
              std::tuple(kTenOClock + 1500, e.request, e.reply, e.durationMicros, e.failure));
    Log() = ExchangeLog{};
}

using F = ExchangeFailure;
const std::string kTooLong(33, 'C');
// clang-format off
INSTANTIATE_TEST_SUITE_P(Failures, ExchangeRecording, ::testing::Values(
    Recorded{1, "V 1", "1\r\n\x04junk", F::None, {0, "V1\r", "1\r\n", 1500, F::None}},
    Recorded{1, "V1", std::nullopt, F::TimedOut, {0, "V1\r", "", 1500, F::TimedOut}},
    Recorded{1, "V1", std::nullopt, F::None, {0, "V1\r", "", 1500, F::LibraryError}},
    Recorded{2, "V1", std::nullopt, F::Refused, {0, "V1\r", "", 1500, F::Refused}},
    Recorded{0, "V1", "1\x04", F::None, {0, "V1\r", "", 0, F::Refused}},
    Recorded{4, "V1", "1\x04", F::None, {0, "V1\r", "", 0, F::Refused}},
    Recorded{1, kTooLong, "1\x04", F::None, {0, kTooLong, "", 0, F::TooLong}}));
// clang-format on

} // namespace
} // namespace marlune::link
