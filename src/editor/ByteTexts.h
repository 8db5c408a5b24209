// Several bytes as one text: "1A 2B 3C", with blanks, commas or line ends between them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/ProgramState.h"

namespace tarnwell {

/// The parts of `text` between blanks, commas, semicolons and line ends.
std::vector<std::string_view> SplitBytes(std::string_view text);

/// The bytes that the parts of `text` write, in the form of `mode` or, behind 0x, in hexadecimal;
/// nothing if one of them is none.
std::optional<std::vector<std::uint8_t>> BytesFromText(std::string_view text, NumberMode mode);

/// The bytes that the parts of `text` write, where nobody says in which base.
struct ByteReadings {
    using Bytes = std::optional<std::vector<std::uint8_t>>;

    Bytes decimal;  ///< none of two digits each, the first of a part a zero: so no decimals are
    Bytes hex;

    /// Whether it could be either and is not the same.
    bool AreTwo() const { return decimal && hex && *decimal != *hex; }
};

/// Parts behind 0x are hexadecimal in both readings.
ByteReadings ReadingsOf(std::string_view text);

/// Bytes to look for, some of which may be any.
using BytePattern = std::vector<std::optional<std::uint8_t>>;

/// The pattern that `text` writes: bytes as above, and "??" for any; nothing if it is empty or a
/// part of it is neither.
std::optional<BytePattern> PatternFromText(std::string_view text, NumberMode mode);

/// The characters of `text` themselves.
BytePattern PatternOf(std::string_view text);

/// The addresses, in order, from which on `bytes` are as `pattern` says; matches may overlap.
std::vector<int> MatchesOf(const BytePattern& pattern, std::span<const std::uint8_t> bytes);

}  // namespace tarnwell
