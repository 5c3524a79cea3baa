#include "marlunecom/stream_com.h"

#include "link/exchange_log.h"
#include "marlunecom/reply_frame.h"
#include "marlunecom/stream_exchange.h"

#include <QDeadlineTimer>
#include <QIODevice>

#include <algorithm>

namespace marlune::marlunecom {

struct StreamCom::Stream {
    std::unique_ptr<QIODevice> device;
    bool dead = false;
    bool lost = false;           // a reply went missing and the peer has not answered since
    QDeadlineTimer probeRenewal; // when a lost stream's probe time is renewed
    qint64 probeLeftMs = 0;
};

StreamCom::StreamCom(LinkTimeouts timeouts) : timeouts_(timeouts) {}

StreamCom::~StreamCom() = default;

std::int32_t StreamCom::adopt(std::unique_ptr<QIODevice> device)
{
    auto stream = std::make_unique<Stream>();
    stream->device = std::move(device);
    return streams_.add(std::move(stream));
}

std::int32_t StreamCom::close(std::int32_t /*kind*/, std::int32_t handle) { return streams_.remove(handle) ? 1 : 0; }

std::int32_t StreamCom::sendRecv(std::int32_t /*kind*/, std::int32_t handle, const char* request, char* reply)
{
    auto* stream = streams_.find(handle);
    if (request == nullptr || reply == nullptr)
        return 0;
    // No connection, or one that has gone: nothing is sent.
    if (stream == nullptr || stream->dead) {
        link::NoteExchangeFailure(link::ExchangeFailure::Refused);
        return 0;
    }
    if (stream->lost)
        return probe(*stream, RequestFrame(request), reply) ? 1 : 0;
    const QDeadlineTimer deadline(timeouts_.reply);
    return settle(*stream, ExchangeOverStream(*stream->device, RequestFrame(request), reply, deadline)) ? 1 : 0;
}

bool StreamCom::probe(Stream& stream, std::string_view request, char* reply)
{
    // A pause as long as the probe ends the operator's action: the next one probes afresh.
    if (stream.probeRenewal.hasExpired())
        stream.probeLeftMs = timeouts_.probe.count();
    bool answered = false;
    // Spent: a request whose reply nobody would wait for must not go out.
    const QDeadlineTimer deadline(std::max<qint64>(stream.probeLeftMs, 0));
    if (stream.probeLeftMs > 0 && resynchronise(*stream.device, deadline))
        answered = settle(stream, ExchangeOverStream(*stream.device, request, reply, deadline));
    else
        link::NoteExchangeFailure(link::ExchangeFailure::Refused);
    stream.probeLeftMs = std::max<qint64>(deadline.remainingTime(), 0);
    stream.probeRenewal.setRemainingTime(timeouts_.probe);
    return answered;
}

bool StreamCom::settle(Stream& stream, bool answered)
{
    if (answered) {
        stream.lost = false;
        return true;
    }
    if (gone(*stream.device)) {
        stream.device->close();
        stream.dead = true;
        return false;
    }
    link::NoteExchangeFailure(link::ExchangeFailure::TimedOut);
    if (!stream.lost) {
        stream.lost = true;
        stream.probeLeftMs = timeouts_.probe.count();
        stream.probeRenewal.setRemainingTime(timeouts_.probe);
    }
    return false;
}

} // namespace marlune::marlunecom
