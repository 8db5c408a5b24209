// Two images of a device side by side: what differs, as rows of a table, and how much that is.
#pragma once

#include <optional>
#include <vector>

#include "image/MemoryBuffer.h"
#include "names/NameBook.h"

namespace tarnwell {

/// A byte that is not the same on both sides.
struct Difference {
    int address;
    std::uint8_t left;
    std::uint8_t right;

    bool operator==(const Difference&) const = default;
};

/// A named value that differs, or a place: neighbouring bytes with other bits that differ.
struct DifferenceRow {
    Named named{};                    ///< null for a place
    std::vector<Difference> bytes{};  ///< of a named value those with a bit of it that differs
    int left = 0;                     ///< its values
    int right = 0;

    int Address() const { return bytes.front().address; }

    bool operator==(const DifferenceRow&) const = default;
};

/// Whether both are the same named value, or places that share a byte.
bool Meet(const DifferenceRow& one, const DifferenceRow& other);

/// By address, a named value before the place that begins in its byte.
std::vector<DifferenceRow> DifferenceRows(const NameBook& names, TargetDevice device,
                                          const MemoryBuffer& left, const MemoryBuffer& right);

/// A byte with a named value that differs and another bit that does counts as a setting and as
/// another byte, and once among the bytes.
struct DifferenceCount {
    int bytes = 0;
    int settings = 0;    ///< those of the user's own names, too
    int otherBytes = 0;  ///< with differing bits that have no name
    int places = 0;      ///< runs of neighbouring other bytes
};

DifferenceCount CountDifferences(const std::vector<DifferenceRow>& rows);

/// Brings the rows' bits of `source` into `image`; all others stay.
void TakeRows(const NameBook& names, const std::vector<DifferenceRow>& rows, TargetDevice device,
              const MemoryBuffer& source, MemoryBuffer& image);

}  // namespace tarnwell
