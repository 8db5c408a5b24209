#include "core/user/Number.h"

#include <algorithm>
#include <limits>

namespace tarnwell {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Nothing if it is more than `maximum`, or not all of `text` are digits.
std::optional<int> FromDigits(std::string_view text, int base, int maximum) {
    if (text.empty())
        return std::nullopt;
    int value = 0;
    for (const char character : text) {
        const auto digit = HexDigit(character);
        if (!digit || *digit >= base)
            return std::nullopt;
        value = value * base + *digit;
        if (value > maximum)
            return std::nullopt;
    }
    return value;
}

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

}  // namespace

std::string HexText(std::uint32_t value, int digits) {
    std::string text;
    for (; value != 0 || digits > 0; value >>= 4, --digits)
        text.insert(text.begin(), kHexDigits[value & 0xF]);
    return text;
}

std::string NumberText(std::uint32_t value, NumberMode mode) {
    return mode == NumberMode::Decimal ? std::to_string(value) : HexText(value);
}

double LeadingNumber(std::string_view text) {
    std::string dense(text);
    std::erase_if(dense, IsBlank);
    auto next = dense.cbegin();
    const bool negative = next != dense.cend() && *next == '-';
    if (negative || (next != dense.cend() && *next == '+'))
        ++next;

    constexpr double kEnough = 1e15;
    double value = 0;
    for (; next != dense.cend() && IsDigit(*next); ++next)
        value = std::min(value * 10 + (*next - '0'), kEnough);
    if (next != dense.cend() && *next == '.') {
        double weight = 0.1;
        for (++next; next != dense.cend() && IsDigit(*next); ++next, weight /= 10)
            value += weight * (*next - '0');
    }
    return negative ? -value : value;
}

std::int32_t DecimalValue(std::string_view text) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<double>(LeadingNumber(text), Limits::min(), Limits::max()));
}

std::optional<std::uint8_t> HexDigit(char character) {
    if (IsDigit(character))
        return static_cast<std::uint8_t>(character - '0');
    if (character >= 'A' && character <= 'F')
        return static_cast<std::uint8_t>(character - 'A' + 10);
    if (character >= 'a' && character <= 'f')
        return static_cast<std::uint8_t>(character - 'a' + 10);
    return std::nullopt;
}

std::int32_t mGlobal::HexToValue(std::string& text) {
    if (text.empty())
        text.push_back('0');
    std::uint32_t value = 0;
    for (const char character : text)
        value = value * 16 + HexDigit(character).value_or(0);
    return static_cast<std::int32_t>(value);
}

std::int32_t ParseNumber(std::string_view text, NumberMode mode) {
    if (mode == NumberMode::Decimal)
        return DecimalValue(text);
    std::string copy(text);
    return mGlobal::HexToValue(copy);
}

std::optional<int> NumberFromText(std::string_view text, NumberMode mode, int maximum) {
    if (HasHexPrefix(text))
        return FromDigits(text.substr(2), 16, maximum);
    return FromDigits(text, BaseOf(mode), maximum);
}

std::optional<std::uint8_t> ByteFromText(std::string_view text, NumberMode mode) {
    const auto value = FromDigits(text, BaseOf(mode), 255);
    return value ? std::optional(static_cast<std::uint8_t>(*value)) : std::nullopt;
}

ShownByte ShownByteFrom(const std::string& text, NumberMode mode) {
    const std::uint8_t value = ByteFromText(text, mode).value_or(0);
    return {value, text == NumberText(value, mode) ? std::nullopt : std::optional(text)};
}

std::optional<char> FilterKey(char character, NumberMode mode) {
    const auto digit = HexDigit(character);
    if (!digit || (mode == NumberMode::Decimal && *digit > 9))
        return std::nullopt;
    return kHexDigits[*digit];
}

}  // namespace tarnwell
