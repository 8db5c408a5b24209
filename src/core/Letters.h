// Comparing names that the user types.
#pragma once

#include <algorithm>
#include <string_view>

namespace tarnwell {

constexpr char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr bool EqualIgnoringCase(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, {}, Lower, Lower);
}

}  // namespace tarnwell
