// The command line: the commands that work with real widgets.
#pragma once

namespace CLI {
class App;
}

namespace labelcut {

class Runner;

/// `labelcut dialog [FILE…]`, also what runs without a sub-command.
void addDialogCommand(CLI::App& app, Runner& runner);
/// `labelcut panel-script [FILE]`.
void addPanelScriptCommand(CLI::App& app, Runner& runner);

} // namespace labelcut
