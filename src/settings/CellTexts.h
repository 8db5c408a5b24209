// What the user is told of settings where they are shown.
#pragma once

#include <string>

#include "settings/Catalog.h"

namespace tarnwell {

/// Where a cell's value lies: "Address 2401, bits 0 to 3".
std::string CellPlaceText(int cell, NumberMode mode);

/// "Out of its range from 0 to 15": how a value is shown that the setting does not have.
std::string OutOfRangeText(int cell, NumberMode mode);

/// "3 values wait to be written"; empty for none.
std::string WaitingText(int count);

}  // namespace tarnwell
