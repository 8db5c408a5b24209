// Two images of a device side by side: what differs, as rows of a table, and how much that is.
#pragma once

#include <optional>
#include <vector>

#include "image/MemoryBuffer.h"

namespace tarnwell {

/// A byte that is not the same on both sides.
struct Difference {
    int address;
    std::uint8_t left;
    std::uint8_t right;

    bool operator==(const Difference&) const = default;
};

/// A setting whose field differs, or a place: neighbouring bytes with other bits that differ.
struct DifferenceRow {
    std::optional<int> cell;        ///< of the setting; none for a place
    std::vector<Difference> bytes;  ///< one of a setting

    int Address() const { return bytes.front().address; }

    bool operator==(const DifferenceRow&) const = default;
};

/// Whether both are the same setting, or places that share a byte.
bool Meet(const DifferenceRow& one, const DifferenceRow& other);

/// By address, a setting before the place that begins in its byte. Named settings are those of the
/// primary EEPROM.
std::vector<DifferenceRow> DifferenceRows(TargetDevice device, const MemoryBuffer& left,
                                          const MemoryBuffer& right);

/// A byte with a setting that differs and another bit that does counts as a setting and as another
/// byte, and once among the bytes.
struct DifferenceCount {
    int bytes = 0;
    int settings = 0;
    int otherBytes = 0;  ///< with differing bits that belong to no setting
    int places = 0;      ///< runs of neighbouring other bytes
};

DifferenceCount CountDifferences(const std::vector<DifferenceRow>& rows);

/// Brings the rows' bits of `source` into `image`; all others stay.
void TakeRows(const std::vector<DifferenceRow>& rows, TargetDevice device,
              const MemoryBuffer& source, MemoryBuffer& image);

}  // namespace tarnwell
