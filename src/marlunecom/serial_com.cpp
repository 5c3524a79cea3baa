#include "marlunecom/serial_com.h"

#include "marlunecom/address_text.h"
#include "marlunecom/com_port_name.h"
#include "marlunecom/stream_exchange.h"

#include <QDeadlineTimer>
#include <QSerialPort>
#include <QString>

namespace marlune::marlunecom {
namespace {

bool Configure(QSerialPort& port)
{
    return port.setBaudRate(QSerialPort::Baud115200) && port.setDataBits(QSerialPort::Data8)
           && port.setParity(QSerialPort::NoParity) && port.setStopBits(QSerialPort::OneStop)
           && port.setFlowControl(QSerialPort::NoFlowControl);
}

} // namespace

SerialCom::SerialCom(LinkTimeouts timeouts) : StreamCom(timeouts) {}

std::int32_t SerialCom::open(std::int32_t /*kind*/, std::int32_t /*mode*/, char* address)
{
    if (address == nullptr)
        return 0;
    const auto device = ComPortDevice(AddressText(address));
    if (!device)
        return 0;

    auto port = std::make_unique<QSerialPort>();
    port->setPortName(QString::fromStdString(*device));
    if (!port->open(QIODevice::ReadWrite) || !Configure(*port))
        return 0;
    return adopt(std::move(port));
}

// A silent controller leaves the port usable; a device that went away does not come back on
// the same descriptor.
bool SerialCom::gone(const QIODevice& device) const
{
    return static_cast<const QSerialPort&>(device).error() == QSerialPort::ResourceError;
}

bool SerialCom::resynchronise(QIODevice& device, const QDeadlineTimer& deadline)
{
    return DrainUntilQuiet(device, timeouts().quiet, deadline);
}

} // namespace marlune::marlunecom
