// The framing of requests and replies: a request buffer that may lack its NUL or its CR, and
// a reply stream of any bytes, cut into chunks as a socket delivers them, read up to its 0x04.
#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"
#include "marlunecom/stream_exchange.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QDeadlineTimer>
#include <QIODevice>

#include <cstdlib>

namespace {

// A peer that takes every request and answers with the given bytes, a chunk per read; it has
// nothing more to say once they are used up, so that no wait is real.
class ScriptedPeer final : public QIODevice {
public:
    ScriptedPeer(std::string bytes, std::size_t chunk) : bytes_(std::move(bytes)), chunk_(chunk)
    {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return static_cast<qint64>(bytes_.size() - at_); }
    bool waitForReadyRead(int) override { return at_ < bytes_.size(); }
    bool waitForBytesWritten(int) override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const auto count = std::min({chunk_, bytes_.size() - at_, static_cast<std::size_t>(maxSize)});
        std::copy_n(bytes_.data() + at_, count, data);
        at_ += count;
        return static_cast<qint64>(count);
    }
    qint64 writeData(const char*, qint64 size) override { return size; }

private:
    std::string bytes_;
    std::size_t chunk_;
    std::size_t at_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace marlune;
    FuzzedDataProvider input(data, size);
    const auto chunk = input.ConsumeIntegralInRange<std::size_t>(1, 3000);
    const std::string bytes = input.ConsumeRemainingBytesAsString();

    // A request buffer of the library's size that may lack its NUL and its CR.
    std::vector<char> request(bytes.begin(), bytes.end());
    request.resize(std::max(request.size(), link::kSendBufferSize));
    marlunecom::CommandOfFrame(marlunecom::RequestFrame(request.data()));

    ScriptedPeer peer(bytes, chunk);
    std::vector<char> streamed(link::kReceiveBufferSize);
    if (marlunecom::ExchangeOverStream(peer, "???\r", streamed.data(), QDeadlineTimer(0))) {
        const auto end = bytes.find(marlunecom::kReplyTerminator);
        const auto length = std::min(std::min(end, bytes.size()), link::kReceiveBufferSize);
        if (bytes.compare(0, length, streamed.data(), length) != 0)
            std::abort();
    }
    return 0;
}
