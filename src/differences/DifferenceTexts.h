// What tells two images apart, as it is read: columns, lists, a count in words.
#pragma once

#include <array>
#include <string>

#include "core/user/Number.h"
#include "differences/DifferenceRows.h"

namespace tarnwell {

inline constexpr std::array<std::string_view, 5> kDifferenceColumns{"Address", "Setting", "Format",
                                                                    "Left", "Right"};
inline constexpr std::size_t kAddressColumn = 0;
inline constexpr std::size_t kSettingColumn = 1;
inline constexpr std::size_t kLeftColumn = 3;
inline constexpr std::size_t kRightColumn = 4;
using DifferenceTexts = std::array<std::string, kDifferenceColumns.size()>;

/// A row's texts by column, the numbers in `mode`. A place of more than one byte has its first and
/// last address and how many bytes it has, the values being those of its bytes.
DifferenceTexts TextsOf(const DifferenceRow& row, NumberMode mode);

/// The texts of one byte of a place.
DifferenceTexts TextsOf(const Difference& byte, NumberMode mode);

/// A line for each named value and each byte of a place, columns parted by `separator`, with the
/// columns' names first, which tell hexadecimal numbers, and each line ended by "\n". No text holds
/// a tabulator or a comma.
std::string ListText(const std::vector<DifferenceRow>& rows, NumberMode mode, char separator);

/// What becomes of each named value and each byte with other bits, a line each: "Address 2363 (480i
/// CR02): 7 becomes 9". Left is before.
std::string ChangesText(const std::vector<DifferenceRow>& rows, NumberMode mode);

/// "14 bytes differ: 3 settings, 11 other bytes in 2 places", or "No differences".
std::string DifferencesText(const DifferenceCount& count);

}  // namespace tarnwell
