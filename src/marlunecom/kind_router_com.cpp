#include "marlunecom/kind_router_com.h"

namespace marlune::marlunecom {

KindRouterCom::KindRouterCom(std::unique_ptr<link::MarluneCom> usb, std::unique_ptr<link::MarluneCom> ethernet,
                             std::unique_ptr<link::MarluneCom> serial)
    : byKind_{std::move(usb), std::move(ethernet), std::move(serial)}
{}

link::MarluneCom* KindRouterCom::route(std::int32_t kind) const
{
    if (kind < 1 || kind > static_cast<std::int32_t>(byKind_.size()))
        return nullptr;
    return byKind_[static_cast<std::size_t>(kind - 1)].get();
}

std::int32_t KindRouterCom::open(std::int32_t kind, std::int32_t mode, char* address)
{
    auto* com = route(kind);
    return com != nullptr ? com->open(kind, mode, address) : 0;
}

std::int32_t KindRouterCom::close(std::int32_t kind, std::int32_t handle)
{
    auto* com = route(kind);
    return com != nullptr ? com->close(kind, handle) : 0;
}

std::int32_t KindRouterCom::sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply)
{
    auto* com = route(kind);
    return com != nullptr ? com->sendRecv(kind, handle, request, reply) : 0;
}

} // namespace marlune::marlunecom
