// The command line: "labelcut plan", a job label by label before it is printed.
#pragma once

namespace CLI {
class App;
}

namespace labelcut {

class Runner;

void addPlanCommand(CLI::App& app, Runner& runner);

} // namespace labelcut
