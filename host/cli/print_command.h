// The command line: "labelcut print", the product's main job.
#pragma once

namespace CLI {
class App;
}

namespace labelcut {

class Runner;

void addPrintCommand(CLI::App& app, Runner& runner);

} // namespace labelcut
