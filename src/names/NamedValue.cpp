#include "names/NamedValue.h"

#include <algorithm>

#include "core/Letters.h"
#include "core/Words.h"

namespace tarnwell {

namespace {

constexpr int kByteBits = 8;
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kLongestText = 200;

std::string Number(int number, NumberMode mode) {
    return NumberText(static_cast<std::uint32_t>(number), mode);
}

std::uint8_t& ByteOf(std::span<std::uint8_t> image, int address) {
    return image[static_cast<std::size_t>(address)];
}

bool IsAddress(int number) {
    return number >= 0 && number < kEepromBytes;
}

bool IsNameLetter(char letter) {
    const char lower = Lower(letter);
    return (lower >= 'a' && lower <= 'z') || (letter >= '0' && letter <= '9') ||
           std::string_view("-_.").find(letter) != std::string_view::npos;
}

std::string NameFault(std::string_view name) {
    if (name.empty() || name.size() > kLongestName)
        return "A name has 1 to " + std::to_string(kLongestName) + " characters.";
    if (!std::ranges::all_of(name, IsNameLetter))
        return "A name is made of letters, digits, '-', '_' and '.'.";
    if (std::string_view("-_.").find(name.front()) != std::string_view::npos)
        return "A name begins with a letter or a digit.";
    return {};
}

std::string PlaceFault(const NamedValue& named) {
    if (!IsAddress(named.address) || (named.low && !IsAddress(*named.low)))
        return "An address goes from 0 to " + std::to_string(kEepromBytes - 1) + ".";
    if (named.low == named.address)
        return "The high and the low byte are two.";
    return {};
}

std::string BitsFault(const NamedValue& named) {
    const auto [lowest, highest] = named.bits;
    if (lowest < 0 || highest >= kByteBits || lowest > highest)
        return "The bits of a byte go from 0 to 7, the lowest first.";
    if (named.low && named.bits != BitRange{0, kByteBits - 1})
        return "Two bytes are one number with all their bits.";
    return {};
}

std::string RangeFault(const NamedValue& named) {
    if (named.lowest < 0 || named.lowest > named.highest || named.highest > LargestIn(named))
        return "The values of these bits go from 0 to " + std::to_string(LargestIn(named)) +
               ", the lowest first.";
    return {};
}

std::string TextFault(std::string_view text) {
    if (text.size() > kLongestText ||
        std::ranges::any_of(text, [](unsigned char letter) { return letter < ' '; }))
        return "A text is one line of at most " + std::to_string(kLongestText) + " bytes.";
    return {};
}

std::string ValuesFault(const NamedValue& named) {
    for (const auto& [value, text] : named.values) {
        if (value < named.lowest || value > named.highest)
            return "The value " + std::to_string(value) + " lies outside the range.";
        if (text.empty())
            return "The text of the value " + std::to_string(value) + " is empty.";
        if (std::string fault = TextFault(text); !fault.empty())
            return fault;
    }
    return {};
}

}  // namespace

NamedValue NamedSetting(int cell) {
    const CellInfo& info = Cell(cell);
    NamedValue named;
    named.name = SettingName(cell, '.');
    named.address = info.address;
    named.bits = {info.setting->shift, kByteBits - 1};
    named.highest = info.setting->maximum;
    named.text = info.setting->description;
    named.cell = cell;
    return named;
}

int LargestIn(const NamedValue& named) {
    const int bits = named.low ? 2 * kByteBits : named.bits.highest - named.bits.lowest + 1;
    return (1 << std::clamp(bits, 1, 2 * kByteBits)) - 1;
}

int MaskAt(const NamedValue& named, int address) {
    if (named.low)
        return address == named.address || address == *named.low ? 0xFF : 0;
    return address == named.address ? LargestIn(named) << named.bits.lowest : 0;
}

int ValueIn(std::span<const std::uint8_t> image, const NamedValue& named) {
    const std::uint8_t byte = image[static_cast<std::size_t>(named.address)];
    if (named.low)
        return byte << kByteBits | image[static_cast<std::size_t>(*named.low)];
    return ValueIn(byte, named);
}

int ValueIn(std::uint8_t byte, const NamedValue& named) {
    return (byte & MaskAt(named, named.address)) >> named.bits.lowest;
}

void PutValue(std::span<std::uint8_t> image, const NamedValue& named, int value) {
    std::uint8_t& byte = ByteOf(image, named.address);
    if (named.low) {
        byte = static_cast<std::uint8_t>(value >> kByteBits);
        ByteOf(image, *named.low) = static_cast<std::uint8_t>(value);
        return;
    }
    const int mask = MaskAt(named, named.address);
    byte = static_cast<std::uint8_t>((byte & ~mask) | ((value << named.bits.lowest) & mask));
}

std::string TitleOf(const NamedValue& named) {
    return named.cell ? CellTitle(*named.cell) : named.name;
}

std::string BitsText(const NamedValue& named, NumberMode mode) {
    if (named.low)
        return "high byte, low byte at " + Number(*named.low, mode);
    return named.cell ? BitsText(*named.cell) : BitsText(named.bits);
}

std::string PlaceText(const NamedValue& named, NumberMode mode) {
    return EepromName(named.device) + ", address " + Number(named.address, mode) + ", " +
           BitsText(named, mode);
}

std::string ValueText(const NamedValue& named, int value, NumberMode mode) {
    const auto meaning = named.values.find(value);
    return Number(value, mode) +
           (meaning == named.values.end() ? "" : " (" + meaning->second + ")");
}

std::string FaultOf(const NamedValue& named, std::string& key) {
    std::string fault;
    const auto isWrong = [&](const char* in, std::string text) {
        key = in;
        fault = std::move(text);
        return !fault.empty();
    };
    static_cast<void>(
        isWrong("name", NameFault(named.name)) || isWrong("address", PlaceFault(named)) ||
        isWrong("bits", BitsFault(named)) || isWrong("range", RangeFault(named)) ||
        isWrong("text", TextFault(named.text)) || isWrong("values", ValuesFault(named)));
    return fault;
}

}  // namespace tarnwell
