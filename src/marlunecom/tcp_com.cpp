#include "marlunecom/tcp_com.h"

#include "marlunecom/address_text.h"
#include "marlunecom/tcp_address.h"

#include <QString>
#include <QTcpSocket>

namespace marlune::marlunecom {

TcpCom::TcpCom(LinkTimeouts timeouts) : StreamCom(timeouts) {}

std::int32_t TcpCom::open(std::int32_t /*kind*/, std::int32_t /*mode*/, char* address)
{
    if (address == nullptr)
        return 0;
    const auto target = ParseTcpAddress(AddressText(address), kDefaultTcpPort);
    if (!target)
        return 0;

    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QString::fromStdString(target->host), target->port);
    if (!socket->waitForConnected(static_cast<int>(timeouts().connect.count())))
        return 0;
    // One short request at a time: sending at once saves the delay of Nagle's algorithm.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    return adopt(std::move(socket));
}

bool TcpCom::gone(const QIODevice& device) const
{
    return static_cast<const QTcpSocket&>(device).state() != QAbstractSocket::ConnectedState;
}

} // namespace marlune::marlunecom
