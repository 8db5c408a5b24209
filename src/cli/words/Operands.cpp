#include "cli/words/Operands.h"

#include <algorithm>

namespace tarnwell::cli {

std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& known) {
    constexpr std::size_t kLongest = 64;
    word = word.substr(0, kLongest);
    const auto changes = [&](std::string_view other) {
        std::vector<std::vector<std::size_t>> least(word.size() + 1,
                                                    std::vector<std::size_t>(other.size() + 1));
        for (std::size_t i = 0; i <= word.size(); ++i) {
            for (std::size_t j = 0; j <= other.size(); ++j) {
                if (i == 0 || j == 0) {
                    least[i][j] = i + j;
                    continue;
                }
                const auto same = [&](std::size_t a, std::size_t b) {
                    return Lower(word[a - 1]) == Lower(other[b - 1]);
                };
                least[i][j] = std::min({least[i - 1][j] + 1, least[i][j - 1] + 1,
                                        least[i - 1][j - 1] + (same(i, j) ? 0 : 1)});
                if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j))
                    least[i][j] = std::min(least[i][j], least[i - 2][j - 2] + 1);
            }
        }
        return least[word.size()][other.size()];
    };
    return *std::ranges::min_element(known, {}, changes);
}

}  // namespace tarnwell::cli
