// The command line: what is printed, how often, and how it lies on its labels.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/cli/preset_argument.h"
#include "host/job/order.h"

namespace CLI {
class App;
}

namespace labelcut {

/// FILE…, --copies and --pages; --reverse, --no-collate and --fit.
struct AmountArguments {
    std::vector<std::string> files;
    /// Nothing: a preset may say how many.
    std::optional<int> copies;
    std::string pages;
    bool isReversed = false;
    bool isUncollated = false;
    std::string fit;

    /// Adds the first three to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    /// The other three.
    void addLayoutTo(CLI::App& command);
    /// The same, understood. Throws what is wrong usage, for the parser to report.
    Amount parsed() const;
    /// @param amount  what was parsed. @return it, with what only the preset says.
    Amount with(const std::optional<KeptChoices>& preset, Amount amount) const;
};

} // namespace labelcut
