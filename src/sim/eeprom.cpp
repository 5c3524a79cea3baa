#include "eeprom.h"

namespace marlune::sim {

void Eeprom::write(EepromImage image, std::int64_t now)
{
    image_ = std::move(image);
    ++writeCount_;
    busyUntil_ = now + kWriteMicros;
}

} // namespace marlune::sim
