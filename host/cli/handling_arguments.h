// The command line: how often, in which order and in which size pages are printed.
#pragma once

#include <optional>
#include <string>

#include "host/core/handling.h"

namespace CLI {
class App;
}

namespace labelcut {

/// --copies, --reverse, --no-collate, --fit.
struct HandlingArguments {
    std::optional<int> copies;
    bool isReversed = false;
    bool isUncollated = false;
    std::string fit;

    /// Adds them to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    /// What is kept, and over it what was typed.
    Handling over(const Handling& kept) const;
};

} // namespace labelcut
