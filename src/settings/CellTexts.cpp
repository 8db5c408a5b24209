#include "settings/CellTexts.h"

#include "core/Number.h"

namespace tarnwell {

namespace {

std::string AddressText(int address, NumberMode mode) {
    return NumberText(static_cast<std::uint32_t>(address), mode);
}

}  // namespace

std::string CellPlaceText(int cell, NumberMode mode) {
    return "Address " + AddressText(Cell(cell).address, mode) + ", " + BitsText(cell);
}

std::string ByteText(int address, NumberMode mode) {
    const auto cell = CellAtAddress(address);
    if (!cell)
        return {};
    return AddressText(address, mode) + ": " + SettingName(*cell) + ", " + BitsText(*cell);
}

std::string WaitingText(int count) {
    if (count == 0)
        return {};
    return std::to_string(count) +
           (count == 1 ? " value waits to be written" : " values wait to be written");
}

}  // namespace tarnwell
