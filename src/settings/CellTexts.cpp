#include "settings/CellTexts.h"

#include "core/Words.h"
#include "core/user/Number.h"

namespace tarnwell {

namespace {

std::string AddressNumber(int address, NumberMode mode) {
    return NumberText(static_cast<std::uint32_t>(address), mode);
}

}  // namespace

std::string CellPlaceText(int cell, NumberMode mode) {
    return "Address " + AddressNumber(Cell(cell).address, mode) + ", " + BitsText(cell);
}

std::string OutOfRangeText(int cell, NumberMode mode) {
    const auto maximum = static_cast<std::uint32_t>(Cell(cell).setting->maximum);
    return "Out of its range from 0 to " + NumberText(maximum, mode);
}

std::string WaitingText(int count) {
    if (count == 0)
        return {};
    return Counted(count, "value", "waits", "wait") + " to be written";
}

}  // namespace tarnwell
