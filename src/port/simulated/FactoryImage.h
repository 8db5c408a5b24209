// What the EEPROMs of a simulated television hold before anybody changed them.
#pragma once

#include "port/simulated/Eeprom24C64.h"
#include "port/simulated/Fault.h"

namespace tarnwell {

/// Always the same values for the same chip. The named settings are within their ranges.
EepromImage FactoryImage(Chip chip);

}  // namespace tarnwell
