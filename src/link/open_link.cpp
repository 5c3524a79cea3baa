#include "link/open_link.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "link/controller_link.h"

namespace marlune::link {

std::int32_t OpenWithAddress(std::int32_t kind, std::int32_t mode, std::string& field)
{
    std::array<char, kAddressBufferSize> address{};
    std::memcpy(address.data(), field.data(), std::min(field.size(), address.size() - 1));
    const std::int32_t handle = Com().open(kind, mode, address.data());
    address.back() = '\0';
    field = address.data();
    return handle;
}

bool OpenLink(bool secondEthernetAttempt)
{
    ControllerLink& link = Link();
    switch (link.linkKind) {
    case 1: link.linkHandle = OpenWithAddress(1, 1, link.linkAddress); break;
    case 2:
        link.linkHandle = OpenWithAddress(2, 0, link.ipAddress);
        if (link.linkHandle < 1 && secondEthernetAttempt)
            link.linkHandle = OpenWithAddress(2, 0, link.ipAddress);
        break;
    case 3: link.linkHandle = OpenWithAddress(3, 0, link.comPort); break;
    default: return false;
    }
    return link.linkHandle >= 1;
}

void CloseLink()
{
    const ControllerLink& link = Link();
    if (link.linkKind >= 1 && link.linkKind <= 3)
        Com().close(link.linkKind, link.linkHandle);
}

} // namespace marlune::link
