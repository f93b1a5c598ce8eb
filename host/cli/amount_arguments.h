// The command line: what is printed, how often, and how it lies on its labels.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/cli/handling_arguments.h"
#include "host/cli/preset_argument.h"
#include "host/core/result.h"
#include "host/job/order.h"

namespace CLI {
class App;
}

namespace labelcut {

/// FILE…, --pages, and how they are handled.
struct AmountArguments {
    std::vector<std::string> files;
    std::string pages;
    HandlingArguments handling;

    /// Adds them to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    /// Files and pages, understood. Throws what is wrong usage, for the parser to report.
    Amount parsed() const;
    /// @param amount  what was parsed.
    /// @return it, handled as the preset has it and, over that, as was typed.
    Amount with(const std::optional<KeptChoices>& preset, Amount amount) const;
};

/// Why an amount is not printed, with the arguments that are a way out of it.
Error withWayOut(Error reason);

} // namespace labelcut
