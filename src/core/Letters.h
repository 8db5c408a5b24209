// Comparing names that the user types, in whatever case.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tarnwell {

constexpr char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr bool EqualIgnoringCase(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, {}, Lower, Lower);
}

inline bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
    const auto same = [](char one, char other) { return Lower(one) == Lower(other); };
    return part.empty() ||
           std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

/// What the name of a file ends with, from its last dot on, in small letters: ".hex"; may be empty.
inline std::string SuffixOf(std::string_view name) {
    std::string suffix(name.substr(std::min(name.rfind('.'), name.size())));
    std::ranges::transform(suffix, suffix.begin(), Lower);
    return suffix;
}

}  // namespace tarnwell
