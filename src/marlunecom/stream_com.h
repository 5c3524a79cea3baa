#pragma once

#include "link/marlune_com.h"
#include "marlunecom/handle_table.h"
#include "marlunecom/link_timeouts.h"

#include <cstdint>
#include <memory>
#include <string_view>

class QDeadlineTimer;
class QIODevice;

namespace marlune::marlunecom {

// A link over a byte stream, one open device per handle, used in blocking calls: the exchange
// and the close are the same for every stream; a subclass opens the device and brings it back
// in step after a lost reply.
//
// A request goes out as handed in, up to its NUL; the reply is read up to its 0x04, bounded by
// the receive buffer and by the reply time-out. A peer that has gone fails the exchange and
// leaves the handle dead until it is closed.
//
// A silent peer fails the exchange and leaves the handle lost, not dead (a controller busy
// with its EEPROM answers again later). A reply time-out is waited once: the exchanges on a
// lost handle that follow one another without a pause (one operator action) share the probe
// time of LinkTimeouts, each first brings the stream back in step so that the reply it was
// not given cannot answer a later request, and the first that is answered makes the handle
// sound again.
//
// A failed exchange notes why for the communication log: a time-out when the request went out
// and no reply came in time, a refusal when nothing went out (no such handle, a dead one, a
// spent probe).
//
// No event loop runs during a call: the waits poll the device themselves.
class StreamCom : public link::MarluneCom {
public:
    ~StreamCom() override;

    std::int32_t close(std::int32_t kind, std::int32_t handle) final;
    std::int32_t sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply) final;

protected:
    explicit StreamCom(LinkTimeouts timeouts);

    const LinkTimeouts& timeouts() const { return timeouts_; }

    // Takes an open device and hands out its handle.
    std::int32_t adopt(std::unique_ptr<QIODevice> device);

    // Whether a device whose exchange failed has gone for good; it is then closed.
    virtual bool gone(const QIODevice& device) const = 0;

    // Brings a lost stream back in step by the deadline, so that a reply given up on cannot
    // answer the next request. False when the stream is not fit for a request yet.
    virtual bool resynchronise(QIODevice& device, const QDeadlineTimer& deadline) = 0;

private:
    struct Stream;

    bool probe(Stream& stream, std::string_view request, char* reply);
    bool settle(Stream& stream, bool answered);

    LinkTimeouts timeouts_;
    HandleTable<Stream> streams_;
};

} // namespace marlune::marlunecom
