// The command line: "labelcut presets", named sets of choices for a printer.
#pragma once

namespace CLI {
class App;
}

namespace labelcut {

class Runner;

/// Adds "presets" with its own sub-commands.
void addPresetsCommand(CLI::App& app, Runner& runner);

} // namespace labelcut
