#include "differences/DifferenceRows.h"

#include <algorithm>
#include <set>

namespace tarnwell {

namespace {

/// The bits of a byte that have a name.
int NamedBits(const NameList& names, int address) {
    int bits = 0;
    for (const Named& named : names)
        bits |= MaskAt(*named, address);
    return bits;
}

bool Continues(const DifferenceRow& place, int address) {
    return place.bytes.back().address + 1 == address;
}

/// The second byte of two joins the row of the first.
void AddNamed(const Named& named, const Difference& byte, const MemoryBuffer& left,
              const MemoryBuffer& right, std::vector<DifferenceRow>& rows) {
    const auto first =
        named->low ? std::ranges::find(rows, named, &DifferenceRow::named) : rows.end();
    if (first == rows.end())
        rows.push_back({named, {byte}, ValueIn(left, *named), ValueIn(right, *named)});
    else
        first->bytes.push_back(byte);
}

}  // namespace

std::vector<DifferenceRow> DifferenceRows(const NameBook& names, TargetDevice device,
                                          const MemoryBuffer& left, const MemoryBuffer& right) {
    std::vector<DifferenceRow> rows;
    std::optional<std::size_t> place;
    for (int address = 0; address < kEepromBytes; ++address) {
        const auto index = static_cast<std::size_t>(address);
        const Difference byte{address, left[index], right[index]};
        const int bits = byte.left ^ byte.right;
        if (bits == 0)
            continue;
        const NameList& here = names.At(device, address);
        for (const Named& named : here) {
            if ((bits & MaskAt(*named, address)) != 0)
                AddNamed(named, byte, left, right, rows);
        }
        if ((bits & ~NamedBits(here, address)) == 0)
            continue;
        if (place && Continues(rows[*place], address)) {
            rows[*place].bytes.push_back(byte);
            continue;
        }
        place = rows.size();
        rows.push_back({nullptr, {byte}});
    }
    return rows;
}

bool Meet(const DifferenceRow& one, const DifferenceRow& other) {
    return one.named == other.named && one.Address() <= other.bytes.back().address &&
           other.Address() <= one.bytes.back().address;
}

DifferenceCount CountDifferences(const std::vector<DifferenceRow>& rows) {
    DifferenceCount count;
    std::set<int> addresses;
    for (const DifferenceRow& row : rows) {
        (row.named ? count.settings : count.places) += 1;
        count.otherBytes += row.named ? 0 : static_cast<int>(row.bytes.size());
        for (const Difference& byte : row.bytes)
            addresses.insert(byte.address);
    }
    count.bytes = static_cast<int>(addresses.size());
    return count;
}

void TakeRows(const NameBook& names, const std::vector<DifferenceRow>& rows, TargetDevice device,
              const MemoryBuffer& source, MemoryBuffer& image) {
    for (const DifferenceRow& row : rows) {
        for (const Difference& byte : row.bytes) {
            const int mask = row.named
                                 ? MaskAt(*row.named, byte.address)
                                 : 0xFF & ~NamedBits(names.At(device, byte.address), byte.address);
            const auto index = static_cast<std::size_t>(byte.address);
            image[index] =
                static_cast<std::uint8_t>((image[index] & ~mask) | (source[index] & mask));
        }
    }
}

}  // namespace tarnwell
