#include "marlunecom/stream_com.h"

#include "marlunecom/reply_frame.h"
#include "marlunecom/stream_exchange.h"

#include <QIODevice>

namespace marlune::marlunecom {

StreamCom::StreamCom(LinkTimeouts timeouts) : timeouts_(timeouts) {}

StreamCom::~StreamCom() = default;

std::int32_t StreamCom::adopt(std::unique_ptr<QIODevice> device) { return devices_.add(std::move(device)); }

std::int32_t StreamCom::close(std::int32_t /*kind*/, std::int32_t handle) { return devices_.remove(handle) ? 1 : 0; }

std::int32_t StreamCom::sendRecv(std::int32_t /*kind*/, std::int32_t handle, const char* request, char* reply)
{
    auto* device = devices_.find(handle);
    if (device == nullptr || request == nullptr || reply == nullptr || !device->isOpen())
        return 0;
    if (ExchangeOverStream(*device, RequestFrame(request), reply, timeouts_.reply))
        return 1;
    if (gone(*device))
        device->close();
    return 0;
}

} // namespace marlune::marlunecom
