#pragma once

#include "marlunecom/link_timeouts.h"
#include "marlunecom/stream_com.h"

#include <cstdint>

namespace marlune::marlunecom {

// The virtual COM port link: one serial port per handle (see StreamCom for the exchange), at
// 115200 baud, 8 data bits, no parity, 1 stop bit, no flow control.
//
// The address names the device by the rule of ComPortDevice: a path beginning with "/" as it
// stands, "COMn" as $MARLUNE_COM_DIR/COMn or else /dev/ttyACM<n-1>. A device that is missing,
// busy or no serial port fails the open at once, so that a search over COM1 to COM10 is quick.
// The connect time-out is not used.
//
// A line cannot be connected anew: after a lost reply it is drained until it has been silent
// for the quiet time of LinkTimeouts before the next request goes out. Counting the replies
// owed would not do: a controller writing its EEPROM drops the requests it gets meanwhile.
//
// It works without a QCoreApplication, but Qt then warns at each open that it cannot watch the
// device; the desktop program's QApplication keeps it quiet.
class SerialCom final : public StreamCom {
public:
    explicit SerialCom(LinkTimeouts timeouts = {});

    std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) override;

private:
    bool gone(const QIODevice& device) const override;
    bool resynchronise(QIODevice& device, const QDeadlineTimer& deadline) override;
};

} // namespace marlune::marlunecom
