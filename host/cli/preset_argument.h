// The command line: choices that were kept under a name.
#pragma once

#include <optional>
#include <string>

#include "host/core/handling.h"
#include "host/core/result.h"
#include "host/printers/opened_printer.h"

namespace CLI {
class App;
}

namespace labelcut {

/// A preset as far as the printer has it.
struct KeptChoices {
    Settings settings;
    Handling handling;
};

/// --preset NAME.
struct PresetArgument {
    std::string name;

    /// Adds it to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    /// What the printer's PPD makes of the preset; nothing when none was named. What it lacks is
    /// complained of. The failure says which presets there are.
    Result<std::optional<KeptChoices>> matched(const OpenedPrinter& printer) const;
};

} // namespace labelcut
