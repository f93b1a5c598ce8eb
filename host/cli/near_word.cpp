// The command line: what a mistyped word was likely meant to be.
#include "host/cli/near_word.h"

#include <algorithm>
#include <numeric>

namespace labelcut {

namespace {

using Row = std::vector<std::size_t>;

/// Mistakes of typing between two words (the restricted Damerau-Levenshtein distance).
std::size_t mistakesBetween(const std::string& a, const std::string& b) {
    Row beforeLast(b.size() + 1);
    Row last(b.size() + 1);
    Row row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t(0));
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t wrong = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + wrong});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast.swap(last);
        last.swap(row);
    }
    return last[b.size()];
}

} // namespace

std::optional<std::string> nearWord(const std::string& typed,
                                    const std::vector<std::string>& known) {
    // A longer difference in length takes more mistakes than can count as near.
    const std::size_t allowed = std::max<std::size_t>(1, typed.size() / 3);
    std::optional<std::string> nearest;
    std::size_t fewest = allowed + 1;
    for (const std::string& word : known) {
        const bool isOfOtherLength =
            word.size() > typed.size() + allowed || typed.size() > word.size() + allowed;
        const std::size_t mistakes = isOfOtherLength ? fewest : mistakesBetween(typed, word);
        if (mistakes < fewest) {
            nearest = word;
            fewest = mistakes;
        }
    }
    return nearest;
}

} // namespace labelcut
