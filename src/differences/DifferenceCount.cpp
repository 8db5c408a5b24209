#include "differences/DifferenceCount.h"

#include "settings/Catalog.h"

namespace tarnwell {

namespace {

/// The lowest bit of a byte that a setting fills; 8 where none does.
int SettingShift(TargetDevice device, int address) {
    const auto cell = device == TargetDevice::Primary ? CellAtAddress(address) : std::nullopt;
    return cell ? Cell(*cell).setting->shift : 8;
}

}  // namespace

DifferenceCount CountDifferences(TargetDevice device, const MemoryBuffer& left,
                                 const MemoryBuffer& right) {
    DifferenceCount count;
    bool withinPlace = false;
    for (int address = 0; address < kEepromBytes; ++address) {
        const auto index = static_cast<std::size_t>(address);
        const int bits = left[index] ^ right[index];
        const int shift = bits == 0 ? 8 : SettingShift(device, address);
        const bool other = (bits & ((1 << shift) - 1)) != 0;
        count.bytes += bits != 0 ? 1 : 0;
        count.settings += bits >> shift != 0 ? 1 : 0;
        count.otherBytes += other ? 1 : 0;
        count.places += other && !withinPlace ? 1 : 0;
        withinPlace = other;
    }
    return count;
}

std::string Counted(int count, std::string_view what) {
    return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

std::string DifferencesText(const DifferenceCount& count) {
    if (count.bytes == 0)
        return "No differences";
    std::string text =
        Counted(count.bytes, "byte") + (count.bytes == 1 ? " differs: " : " differ: ");
    if (count.settings > 0)
        text += Counted(count.settings, "setting") + (count.otherBytes > 0 ? ", " : "");
    if (count.otherBytes > 0)
        text += Counted(count.otherBytes, count.settings > 0 ? "other byte" : "byte") + " in " +
                Counted(count.places, "place");
    return text;
}

}  // namespace tarnwell
