#include "marlunecom/tcp_com.h"

#include "marlunecom/address_text.h"
#include "marlunecom/tcp_address.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QString>
#include <QTcpSocket>

namespace marlune::marlunecom {
namespace {

// A socket that remembers the address it reached, so that a new connection needs no name
// look-up, whose wait no time-out bounds.
class ControllerSocket final : public QTcpSocket {
public:
    bool connectWithin(int milliseconds)
    {
        if (!waitForConnected(milliseconds))
            return false;
        // One short request at a time: sending at once saves the delay of Nagle's algorithm.
        setSocketOption(QAbstractSocket::LowDelayOption, 1);
        reached_ = peerAddress();
        port_ = peerPort();
        return true;
    }

    bool reconnectWithin(int milliseconds)
    {
        abort();
        connectToHost(reached_, port_);
        return connectWithin(milliseconds);
    }

private:
    QHostAddress reached_;
    quint16 port_ = 0;
};

} // namespace

TcpCom::TcpCom(LinkTimeouts timeouts) : StreamCom(timeouts) {}

std::int32_t TcpCom::open(std::int32_t /*kind*/, std::int32_t /*mode*/, char* address)
{
    if (address == nullptr)
        return 0;
    const auto target = ParseTcpAddress(AddressText(address), kDefaultTcpPort);
    if (!target)
        return 0;

    auto socket = std::make_unique<ControllerSocket>();
    socket->connectToHost(QString::fromStdString(target->host), target->port);
    if (!socket->connectWithin(static_cast<int>(timeouts().connect.count())))
        return 0;
    return adopt(std::move(socket));
}

bool TcpCom::gone(const QIODevice& device) const
{
    return static_cast<const QTcpSocket&>(device).state() != QAbstractSocket::ConnectedState;
}

bool TcpCom::resynchronise(QIODevice& device, const QDeadlineTimer& deadline)
{
    return static_cast<ControllerSocket&>(device).reconnectWithin(static_cast<int>(deadline.remainingTime()));
}

} // namespace marlune::marlunecom
