#include "marlunecom/simulator_com.h"

#include "link/exchange_log.h"
#include "marlunecom/reply_frame.h"

#include <algorithm>
#include <cstring>
#include <iostream>

namespace marlune::marlunecom {
namespace {

SimulatorCom::Clock SteadyClockSinceNow()
{
    const auto start = std::chrono::steady_clock::now();
    return [start] {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
    };
}

void WriteUnterminated(std::string_view text, char* reply)
{
    std::memset(reply, ' ', link::kReceiveBufferSize);
    std::memcpy(reply, text.data(), std::min(text.size(), link::kReceiveBufferSize));
}

} // namespace

SimulatorCom::SimulatorCom(Clock clock, std::chrono::milliseconds replyTimeout)
    : clock_(clock ? std::move(clock) : SteadyClockSinceNow()),
      replyTimeoutMicros_(std::chrono::duration_cast<std::chrono::microseconds>(replyTimeout).count())
{}

std::int32_t SimulatorCom::open(std::int32_t /*kind*/, std::int32_t /*mode*/, char* /*address*/)
{
    ++counters_.opens;
    if (failureModes().failFirstOpen) {
        failureModes().failFirstOpen = false;
        ++counters_.failedOpens;
        return 0;
    }
    return links_.add(std::make_unique<SimulatedLink>());
}

std::int32_t SimulatorCom::close(std::int32_t /*kind*/, std::int32_t handle)
{
    ++counters_.closes;
    return links_.remove(handle) ? 1 : 0;
}

std::int32_t SimulatorCom::sendRecv(std::int32_t /*kind*/, std::int32_t handle, const char* request, char* reply)
{
    ++counters_.exchanges;
    auto* link = links_.find(handle);
    if (request == nullptr || reply == nullptr)
        return failExchange();
    if (link == nullptr) {
        link::NoteExchangeFailure(link::ExchangeFailure::Refused);
        return failExchange();
    }

    controller_.advanceTo(std::max(controller_.now(), clock_()));
    if (link->dropped || dropsNow())
        return timeOut();

    const auto [command, complete] = CommandOfFrame(RequestFrame(request));
    const auto answer = complete ? controller_.execute(command) : std::nullopt;
    keepEeprom();
    if (!answer)
        return timeOut();

    const auto holdMicros = std::int64_t{failureModes().slowReplyMs} * 1000;
    if (holdMicros >= replyTimeoutMicros_)
        return timeOut();
    controller_.advanceTo(controller_.now() + std::max<std::int64_t>(holdMicros, 0));

    if (failureModes().noTerminator)
        WriteUnterminated(*answer, reply);
    else
        WriteReplyFrame(*answer, reply);
    return 1;
}

bool SimulatorCom::keepEepromIn(std::filesystem::path file, std::string& why)
{
    sim::EepromFile kept(std::move(file));
    auto eeprom = kept.load(why);
    if (!eeprom)
        return false;
    controller_.powerUpWith(std::move(*eeprom));
    eepromFile_ = std::move(kept);
    return true;
}

void SimulatorCom::keepEeprom()
{
    std::string why;
    if (eepromFile_ && !eepromFile_->saveIfWritten(controller_.eeprom(), why))
        std::cerr << "The simulated controller's EEPROM could not be kept in " << eepromFile_->path().string() << ": "
                  << why << '\n';
}

std::int32_t SimulatorCom::failExchange()
{
    ++counters_.failedExchanges;
    return 0;
}

std::int32_t SimulatorCom::timeOut()
{
    link::NoteExchangeFailure(link::ExchangeFailure::TimedOut);
    controller_.advanceTo(controller_.now() + replyTimeoutMicros_);
    return failExchange();
}

bool SimulatorCom::dropsNow()
{
    auto& remaining = failureModes().dropAfterExchanges;
    if (remaining < 0)
        return false;
    if (remaining > 0) {
        --remaining;
        return false;
    }
    remaining = -1;
    links_.forEach([](SimulatedLink& link) { link.dropped = true; });
    return true;
}

} // namespace marlune::marlunecom
