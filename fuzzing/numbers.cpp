// The number parsers: they agree with each other and, where those apply, with the library's.
#include <algorithm>
#include <cmath>

#include "Fuzzing.h"
#include "core/user/NumberModeMenu.h"
#include "image/WholeDevice.h"

namespace tarnwell::fuzzing {

namespace {

bool AllOf(std::string_view text, std::string_view characters) {
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

void CheckAgainstLibrary(const std::string& text) {
    if (AllOf(text, "0123456789") && text.size() <= 15) {
        REQUIRE(LeadingNumber(text) == std::stod(text));
        REQUIRE(DecimalValue(text) == std::min(std::stoll(text), 0x7FFFFFFFLL));
    }
    std::string hex = text;
    const std::int32_t value = mGlobal::HexToValue(hex);
    if (AllOf(text, "0123456789abcdefABCDEF") && text.size() <= 8)
        REQUIRE(static_cast<std::uint32_t>(value) == std::stoul(text, nullptr, 16));
}

void CheckMode(const std::string& text, NumberMode mode) {
    const auto value = static_cast<std::uint32_t>(ParseNumber(text, mode));
    if (const auto byte = ByteFromText(text, mode))
        REQUIRE(*byte == value);
    const std::string written = NumberText(value, mode);
    if (value <= 0x7FFFFFFF)
        REQUIRE(static_cast<std::uint32_t>(ParseNumber(written, mode)) == value);
    const std::string converted = ConvertedNumber(text, mode);
    REQUIRE(AllOf(converted, "0123456789ABCDEF"));
    for (const char character : text) {
        if (const auto key = FilterKey(character, mode))
            REQUIRE(ByteFromText(std::string(1, *key), mode));
    }
}

}  // namespace

void Run(std::string_view input) {
    const std::string text(input);
    CheckAgainstLibrary(text);
    CheckMode(text, NumberMode::Decimal);
    CheckMode(text, NumberMode::Hex);
    if (const auto fill = FillValue(text))
        REQUIRE(std::abs(LeadingNumber(text) - *fill) <= 0.5);
}

}  // namespace tarnwell::fuzzing
