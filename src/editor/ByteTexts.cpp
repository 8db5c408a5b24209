#include "editor/ByteTexts.h"

#include <algorithm>

#include "core/user/Number.h"

namespace tarnwell {

namespace {

constexpr std::string_view kSeparators = " \t\r\n,;";
constexpr std::string_view kAnyByte = "??";

std::optional<std::uint8_t> ByteFrom(std::string_view part, NumberMode mode) {
    const auto value = NumberFromText(part, mode, 255);
    return value ? std::optional(static_cast<std::uint8_t>(*value)) : std::nullopt;
}

}  // namespace

std::vector<std::string_view> SplitBytes(std::string_view text) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t begin = text.find_first_not_of(kSeparators);
        if (begin == std::string_view::npos)
            return parts;
        text.remove_prefix(begin);
        parts.push_back(text.substr(0, text.find_first_of(kSeparators)));
        text.remove_prefix(parts.back().size());
    }
}

std::optional<std::vector<std::uint8_t>> BytesFromText(std::string_view text, NumberMode mode) {
    std::vector<std::uint8_t> bytes;
    for (const std::string_view part : SplitBytes(text)) {
        const auto byte = ByteFrom(part, mode);
        if (!byte)
            return std::nullopt;
        bytes.push_back(*byte);
    }
    return bytes;
}

ByteReadings ReadingsOf(std::string_view text) {
    ByteReadings readings{.decimal = BytesFromText(text, NumberMode::Decimal),
                          .hex = BytesFromText(text, NumberMode::Hex)};
    const auto parts = SplitBytes(text);
    const auto isPair = [](std::string_view part) { return part.size() == 2; };
    const auto isFilled = [](std::string_view part) { return part.starts_with('0'); };
    if (std::ranges::all_of(parts, isPair) && std::ranges::any_of(parts, isFilled))
        readings.decimal.reset();
    return readings;
}

std::optional<BytePattern> PatternFromText(std::string_view text, NumberMode mode) {
    BytePattern pattern;
    for (const std::string_view part : SplitBytes(text)) {
        const auto byte = ByteFrom(part, mode);
        if (!byte && part != kAnyByte)
            return std::nullopt;
        pattern.push_back(byte);
    }
    return pattern.empty() ? std::nullopt : std::optional(std::move(pattern));
}

BytePattern PatternOf(std::string_view text) {
    BytePattern pattern;
    for (const char character : text)
        pattern.emplace_back(static_cast<std::uint8_t>(character));
    return pattern;
}

std::vector<int> MatchesOf(const BytePattern& pattern, std::span<const std::uint8_t> bytes) {
    const auto matches = [](std::uint8_t byte, std::optional<std::uint8_t> wanted) {
        return !wanted || byte == *wanted;
    };
    std::vector<int> found;
    for (auto from = bytes.begin(); from != bytes.end(); ++from) {
        from = std::search(from, bytes.end(), pattern.begin(), pattern.end(), matches);
        if (from == bytes.end())
            break;
        found.push_back(static_cast<int>(from - bytes.begin()));
    }
    return found;
}

}  // namespace tarnwell
