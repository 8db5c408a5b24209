#include "differences/DifferenceRows.h"

#include <set>

#include "settings/Catalog.h"

namespace tarnwell {

namespace {

/// The bits of a byte that its setting fills.
int FieldMask(std::optional<int> cell) {
    return cell ? (0xFF << Cell(*cell).setting->shift) & 0xFF : 0;
}

bool Continues(const DifferenceRow& place, int address) {
    return place.bytes.back().address + 1 == address;
}

}  // namespace

std::vector<DifferenceRow> DifferenceRows(TargetDevice device, const MemoryBuffer& left,
                                          const MemoryBuffer& right) {
    std::vector<DifferenceRow> rows;
    std::optional<std::size_t> place;
    for (int address = 0; address < kEepromBytes; ++address) {
        const auto index = static_cast<std::size_t>(address);
        const Difference byte{address, left[index], right[index]};
        const int bits = byte.left ^ byte.right;
        const auto cell = bits == 0 ? std::nullopt : CellOn(device, address);
        const int field = FieldMask(cell);
        if ((bits & field) != 0)
            rows.push_back({cell, {byte}});
        if ((bits & ~field) == 0)
            continue;
        if (place && Continues(rows[*place], address)) {
            rows[*place].bytes.push_back(byte);
            continue;
        }
        place = rows.size();
        rows.push_back({std::nullopt, {byte}});
    }
    return rows;
}

bool Meet(const DifferenceRow& one, const DifferenceRow& other) {
    return one.cell == other.cell && one.Address() <= other.bytes.back().address &&
           other.Address() <= one.bytes.back().address;
}

DifferenceCount CountDifferences(const std::vector<DifferenceRow>& rows) {
    DifferenceCount count;
    std::set<int> addresses;
    for (const DifferenceRow& row : rows) {
        (row.cell ? count.settings : count.places) += 1;
        count.otherBytes += row.cell ? 0 : static_cast<int>(row.bytes.size());
        for (const Difference& byte : row.bytes)
            addresses.insert(byte.address);
    }
    count.bytes = static_cast<int>(addresses.size());
    return count;
}

void TakeRows(const std::vector<DifferenceRow>& rows, TargetDevice device,
              const MemoryBuffer& source, MemoryBuffer& image) {
    for (const DifferenceRow& row : rows) {
        for (const Difference& byte : row.bytes) {
            const int field = FieldMask(CellOn(device, byte.address));
            const int mask = row.cell ? field : 0xFF & ~field;
            const auto index = static_cast<std::size_t>(byte.address);
            image[index] =
                static_cast<std::uint8_t>((image[index] & ~mask) | (source[index] & mask));
        }
    }
}

}  // namespace tarnwell
