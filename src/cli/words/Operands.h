// What commands are given: settings, addresses and values, and what is wrong with a word.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/Letters.h"
#include "names/NameBook.h"

namespace tarnwell::cli {

/// Thrown while the arguments are read, and caught there.
struct WrongArgument {
    std::string reason;
};

/// Thrown where a file that the arguments name cannot be used.
struct UnusableFile {
    std::string reason;
};

/// Values by name: of equal ones the last counts.
struct NamedNumber {
    Named named;
    int value;
};
using NamedNumbers = std::vector<NamedNumber>;

/// The same by cell, and by EEPROM address.
using CellValues = std::map<int, std::uint8_t>;
using ByteValues = std::map<int, std::uint8_t>;

/// The known word that takes the fewest changed, missing, additional or exchanged letters to
/// become `word`.
std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& known);

}  // namespace tarnwell::cli
