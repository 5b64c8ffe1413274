#include "nearestName.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t kLongest = 40;

/// Restricted Damerau-Levenshtein distance: the letters to change, add or take away, or neighbours to swap.
std::size_t distance(const std::string& left, const std::string& right) {
    std::vector<std::vector<std::size_t>> rows(left.size() + 1, std::vector<std::size_t>(right.size() + 1));
    for (std::size_t i = 0; i <= left.size(); ++i) {
        for (std::size_t j = 0; j <= right.size(); ++j) {
            if (i == 0 || j == 0) {
                rows[i][j] = i + j;
                continue;
            }
            const std::size_t change = rows[i - 1][j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
            rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, change});
            const bool isSwapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
            rows[i][j] = isSwapped ? std::min(rows[i][j], rows[i - 2][j - 2] + 1) : rows[i][j];
        }
    }
    return rows.back().back();
}

} // namespace

std::string nearestName(const std::string& typed, const std::vector<std::string>& names) {
    std::string nearest;
    std::size_t least = std::min<std::size_t>(3, (typed.size() + 1) / 2);
    for (const std::string& name : names) {
        const std::size_t wrong = typed.size() > kLongest ? least : distance(typed, name);
        nearest = wrong < least ? name : nearest;
        least = std::min(least, wrong);
    }
    return nearest;
}
