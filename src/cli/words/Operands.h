// What commands are given: settings, addresses and values, and what is wrong with a word.
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

/// The name of a cell's setting, with its format where it has one: "R-YR.480p", "TINT".
std::string CellName(int cell);

/// The known word that takes the fewest changed, missing, additional or exchanged letters to
/// become `word`.
std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& known);

}  // namespace tarnwell::cli
