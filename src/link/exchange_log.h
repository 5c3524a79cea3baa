#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::link {

// Why an exchange failed. TooLong and Refused sent nothing.
enum class ExchangeFailure : std::uint8_t { None, TimedOut, LibraryError, TooLong, Refused };

// One exchange with the controller, as the log keeps it.
struct ExchangeRecord {
    std::int64_t timeOfDayMicros = 0; // local time of day when the request went out
    std::string request;              // the frame's bytes before its NUL, CR included
    std::string reply;                // the receive buffer up to its NUL or 0x04; empty when failed
    std::int64_t durationMicros = 0;
    ExchangeFailure failure = ExchangeFailure::None;
};

// The last kCapacity exchanges of the program, from every window, numbered from 1 in the order
// they were made. A window remembers the number it has shown and asks for the ones after it;
// the numbers that left the ring meanwhile tell how many it missed. Once the ring is full each
// new record reuses the strings of the oldest, so that recording allocates nothing.
//
// The program has one thread; the log is not meant to be shared between threads.
class ExchangeLog final {
public:
    static constexpr std::size_t kCapacity = 10000;
    using Clock = std::function<std::int64_t()>; // microseconds, never going back

    ExchangeLog();

    // Times the exchanges by `clock` from now on; `timeOfDayAtZero` is the local time of day,
    // in microseconds, at which that clock read 0.
    void setClock(Clock clock, std::int64_t timeOfDayAtZero);
    std::int64_t now() const { return clock_(); }

    // `start` and `end` are readings of now().
    void record(std::int64_t start, std::int64_t end, std::string_view request, std::string_view reply,
                ExchangeFailure failure);

    // The number of the newest record; 0 before the first.
    std::uint64_t newest() const { return recorded_; }
    // The number of the oldest record still held; newest() + 1 when none is.
    std::uint64_t oldest() const;
    // A record from oldest() to newest().
    const ExchangeRecord& at(std::uint64_t number) const { return slots_[(number - 1) % kCapacity]; }
    // How many records after `seen` are no longer held.
    std::uint64_t droppedAfter(std::uint64_t seen) const { return oldest() > seen + 1 ? oldest() - seen - 1 : 0; }

    // Forgets every record; the numbering goes on.
    void clear() { firstKept_ = recorded_ + 1; }

private:
    Clock clock_;
    std::int64_t timeOfDayAtZero_ = 0;
    std::vector<ExchangeRecord> slots_;
    std::uint64_t recorded_ = 0;
    std::uint64_t firstKept_ = 1;
};

// The log of this process.
ExchangeLog& Log();

// Our own links say here why the exchange they are failing failed; the exchange that called
// them takes the reason when the call returns. A failure with no reason noted, as the
// controller maker's library gives them, is a LibraryError.
void NoteExchangeFailure(ExchangeFailure why);
// The reason noted since the last call, and None again.
ExchangeFailure TakeNotedFailure();

} // namespace marlune::link
