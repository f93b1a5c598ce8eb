// The command line: "labelcut snapshot", pictures of panels, strip and dialog.
#pragma once

namespace CLI {
class App;
}

namespace labelcut {

class Runner;

/// `labelcut snapshot [--what …] [FILE…] … -o FILE`.
void addSnapshotCommand(CLI::App& app, Runner& runner);

} // namespace labelcut
