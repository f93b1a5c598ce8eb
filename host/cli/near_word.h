// The command line: what a mistyped word was likely meant to be.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace labelcut {

/// The word among `known` that takes the fewest mistakes of typing to turn into `typed`: a letter
/// missing, too many, wrong, or two neighbours swapped. At most one mistake for every three letters
/// of `typed` counts as near, and at least one.
/// @return the first of several that are equally near; nothing when none is near.
std::optional<std::string> nearWord(const std::string& typed,
                                    const std::vector<std::string>& known);

} // namespace labelcut
