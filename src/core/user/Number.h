// The two text forms of a number, decimal and hexadecimal, and the rules that read them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/ProgramState.h"

namespace tarnwell {

constexpr int BaseOf(NumberMode mode) {
    return mode == NumberMode::Decimal ? 10 : 16;
}

/// Decimal digits, or upper-case hexadecimal digits; no sign, prefix, blank or leading zero.
std::string NumberText(std::uint32_t value, NumberMode mode);

/// `value` in upper-case hexadecimal, filled with zeros to `digits` digits.
std::string HexText(std::uint32_t value, int digits = 1);

/// The number at the start of `text`, blanks ignored; 0 if there is none.
double LeadingNumber(std::string_view text);

/// The decimal parse: LeadingNumber as a whole number, held within the 32-bit range.
std::int32_t DecimalValue(std::string_view text);

/// The value of one hexadecimal digit of either case, or nothing.
std::optional<std::uint8_t> HexDigit(char character);

namespace mGlobal {

/// The hexadecimal parse: a character that is no digit counts as 0; beyond 32 bits the value
/// modulo 2^32. An empty text becomes "0".
std::int32_t HexToValue(std::string& text);

}  // namespace mGlobal

/// `text` read by the rule of `mode`.
std::int32_t ParseNumber(std::string_view text, NumberMode mode);

/// Whether `text` begins with 0x.
constexpr bool HasHexPrefix(std::string_view text) {
    return text.starts_with("0x") || text.starts_with("0X");
}

/// The number from 0 to `maximum` that the whole of `text` is, in the form of `mode` or, behind
/// 0x, in hexadecimal.
std::optional<int> NumberFromText(std::string_view text, NumberMode mode, int maximum);

/// The byte that `text` writes, if it is made of digits of `mode` alone and at most 255.
/// The empty text is none.
std::optional<std::uint8_t> ByteFromText(std::string_view text, NumberMode mode);

/// A byte as it is shown: in its own form, or as the text that was entered or loaded for it.
struct ShownByte {
    std::uint8_t value = 0;
    std::optional<std::string> text{};  ///< only where it is not the value's own; empty for no byte

    bool operator==(const ShownByte&) const = default;
    std::string Text(NumberMode mode) const { return text ? *text : NumberText(value, mode); }
    std::optional<std::uint8_t> Byte() const {
        return text && text->empty() ? std::nullopt : std::optional(value);
    }
};

/// The byte that `text` writes in the form of `mode`, shown like this.
ShownByte ShownByteFrom(const std::string& text, NumberMode mode);

/// What a typed character enters: itself, its capital in "Hex", or nothing.
std::optional<char> FilterKey(char character, NumberMode mode);

}  // namespace tarnwell
