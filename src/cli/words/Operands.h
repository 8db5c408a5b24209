// The names and numbers that commands take: settings, addresses, values.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/Letters.h"
#include "settings/Catalog.h"

namespace tarnwell::cli {

/// Thrown while the arguments are read, and caught there.
struct WrongArgument {
    std::string reason;
};

/// Values by cell, and by EEPROM address: of equal ones the last counts.
using CellValues = std::map<int, std::uint8_t>;
using ByteValues = std::map<int, std::uint8_t>;

struct ByteRange {
    int first;
    int count;
};

/// The name of a cell's setting, with its format where it has one: "R-YR.480p", "TINT".
std::string CellName(int cell);

/// NAME[.FORMAT]: the cells of a setting, or the one of a format; case does not matter.
std::vector<int> CellsNamed(std::string_view word);

/// Adds NAME[.FORMAT]=VALUE.
void AddCellValue(std::string_view word, CellValues& values);

/// ADDRESS, ADDRESS-ADDRESS or ADDRESS+COUNT, within the device.
ByteRange RangeFrom(std::string_view word);

/// Adds ADDRESS=VALUE.
void AddByteValue(std::string_view word, ByteValues& values);

/// The known word that takes the fewest changed, missing, additional or exchanged letters to
/// become `word`.
std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& known);

}  // namespace tarnwell::cli
