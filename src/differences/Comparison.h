// Two images of a device side by side: what differs, as rows of a table.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "image/Mismatch.h"

namespace tarnwell {

/// A setting whose field differs, or a place: neighbouring bytes with other bits that differ.
struct DifferenceRow {
    std::optional<int> cell;      ///< of the setting; none for a place
    std::vector<Mismatch> bytes;  ///< one of a setting; `expected` is left, `found` right

    int Address() const { return bytes.front().address; }
};

/// By address, a setting before the place that begins in its byte. Named settings are those of the
/// primary EEPROM.
std::vector<DifferenceRow> DifferenceRows(TargetDevice device, const MemoryBuffer& left,
                                          const MemoryBuffer& right);

inline constexpr std::array<std::string_view, 5> kDifferenceColumns{"Address", "Setting", "Format",
                                                                    "Left", "Right"};
inline constexpr std::size_t kAddressColumn = 0;
inline constexpr std::size_t kLeftColumn = 3;
inline constexpr std::size_t kRightColumn = 4;
using DifferenceTexts = std::array<std::string, kDifferenceColumns.size()>;

/// A row's texts by column, the numbers in `mode`. A place of more than one byte has its first and
/// last address and how many bytes it has, the values being those of its bytes.
DifferenceTexts TextsOf(const DifferenceRow& row, NumberMode mode);

/// The texts of one byte of a place.
DifferenceTexts TextsOf(const Mismatch& byte, NumberMode mode);

/// A line for each setting and each byte of a place, columns parted by `separator`, with the
/// columns' names first, which tell hexadecimal numbers, and each line ended by "\n". No text holds
/// a tabulator or a comma.
std::string ListText(const std::vector<DifferenceRow>& rows, NumberMode mode, char separator);

/// Writes the rows as comma-separated values into the file `path`, whole or not at all; false if
/// that failed.
[[nodiscard]] bool SaveList(const std::string& path, const std::vector<DifferenceRow>& rows,
                            NumberMode mode);

/// Brings the rows' bits of `source` into `image`; all others stay.
void TakeRows(const std::vector<DifferenceRow>& rows, TargetDevice device,
              const MemoryBuffer& source, MemoryBuffer& image);

}  // namespace tarnwell
