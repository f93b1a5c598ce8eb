// The command line: "labelcut options", what the panels offer.
#pragma once

namespace CLI {
class App;
}

namespace labelcut {

class Runner;

void addOptionsCommand(CLI::App& app, Runner& runner);

} // namespace labelcut
