// The command line: choices that were kept under a name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/cli/opened_printer.h"
#include "host/presets/preset_match.h"

namespace CLI {
class App;
}

namespace labelcut {

/// --preset NAME.
struct PresetArgument {
    std::string name;

    /// Adds it to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    /// What the printer's PPD makes of the preset; nothing when none was named. What it lacks is
    /// complained of. The failure says which presets there are.
    Result<std::optional<PresetMatch>> matched(const OpenedPrinter& printer) const;
};

/// Settings that were kept (saved for a queue, a preset) followed by `asked`, which win.
std::vector<ppd::Setting> overridden(std::vector<ppd::Setting> kept,
                                     const std::vector<ppd::Setting>& asked);

} // namespace labelcut
