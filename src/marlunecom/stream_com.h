#pragma once

#include "link/marlune_com.h"
#include "marlunecom/handle_table.h"
#include "marlunecom/link_timeouts.h"

#include <cstdint>
#include <memory>

class QIODevice;

namespace marlune::marlunecom {

// A link over a byte stream, one open device per handle, used in blocking calls: the exchange
// and the close are the same for every stream; a subclass opens the device.
//
// A request goes out as handed in, up to its NUL; the reply is read up to its 0x04, bounded by
// the receive buffer and by the reply time-out. A silent peer fails the exchange and leaves the
// handle usable (a controller busy with its EEPROM answers again later); a peer that has gone
// fails the exchange and leaves the handle dead until it is closed.
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

private:
    LinkTimeouts timeouts_;
    HandleTable<QIODevice> devices_;
};

} // namespace marlune::marlunecom
