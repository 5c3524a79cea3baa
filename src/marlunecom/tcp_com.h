#pragma once

#include "marlunecom/link_timeouts.h"
#include "marlunecom/stream_com.h"

#include <cstdint>

namespace marlune::marlunecom {

// The Ethernet link: one TCP connection per handle (see StreamCom for the exchange).
//
// The address is "host" or "host:port" (see ParseTcpAddress); without a port the controller's
// port kDefaultTcpPort (5001) is used, which marlune-sim serves too. The connection,
// name look-up included, must be made within the connect time-out.
//
// After a lost reply the handle connects anew to the address it first reached, so that the
// late reply arrives on a connection nobody reads.
//
// It needs no QCoreApplication: in a bare program its socket simply does without notifiers.
class TcpCom final : public StreamCom {
public:
    explicit TcpCom(LinkTimeouts timeouts = {});

    std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) override;

private:
    bool gone(const QIODevice& device) const override;
    bool resynchronise(QIODevice& device, const QDeadlineTimer& deadline) override;
};

} // namespace marlune::marlunecom
