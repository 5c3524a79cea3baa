#include "marlunecom/stream_exchange.h"

#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"

#include <QDeadlineTimer>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <cstring>

namespace marlune::marlunecom {
namespace {

int RemainingMs(const QDeadlineTimer& deadline) { return static_cast<int>(deadline.remainingTime()); }

// Bytes that arrived after an earlier exchange gave up belong to no request.
void DiscardLateBytes(QIODevice& device)
{
    if (device.bytesAvailable() > 0 || device.waitForReadyRead(0))
        device.readAll();
}

bool WriteRequest(QIODevice& device, std::string_view request, const QDeadlineTimer& deadline)
{
    const auto size = static_cast<qint64>(request.size());
    if (device.write(request.data(), size) != size)
        return false;
    while (device.bytesToWrite() > 0) {
        if (!device.waitForBytesWritten(RemainingMs(deadline)))
            return false;
    }
    return true;
}

} // namespace

bool ExchangeOverStream(QIODevice& device, std::string_view request, char* reply, const QDeadlineTimer& deadline)
{
    DiscardLateBytes(device);
    if (!WriteRequest(device, request, deadline))
        return false;

    std::size_t filled = 0;
    std::array<char, 1024> chunk{};
    for (;;) {
        if (device.bytesAvailable() == 0 && !device.waitForReadyRead(RemainingMs(deadline)))
            return filled == link::kReceiveBufferSize; // a full buffer is a reply, cut
        const auto got = device.read(chunk.data(), static_cast<qint64>(chunk.size()));
        if (got < 0)
            return false;
        const std::string_view bytes(chunk.data(), static_cast<std::size_t>(got));
        const auto end = bytes.find(kReplyTerminator);
        const auto text = bytes.substr(0, end);
        const auto copied = std::min(text.size(), link::kReceiveBufferSize - filled);
        std::memcpy(reply + filled, text.data(), copied);
        filled += copied;
        if (end != std::string_view::npos) {
            if (filled < link::kReceiveBufferSize)
                reply[filled] = kReplyTerminator;
            return true;
        }
    }
}

bool DrainUntilQuiet(QIODevice& device, std::chrono::milliseconds quiet, const QDeadlineTimer& deadline)
{
    for (;;) {
        device.readAll();
        const auto left = deadline.remainingTime();
        if (left < quiet.count())
            return false;
        if (!device.waitForReadyRead(static_cast<int>(quiet.count())))
            return true;
    }
}

} // namespace marlune::marlunecom
