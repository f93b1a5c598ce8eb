// The command line: how a command is told its printer.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace labelcut {

/// What the user said of the printer: a queue, a PPD, or neither.
struct PrinterArguments {
    std::string queue;
    std::string ppd;
    /// Seconds for each request to the print service.
    double timeout = 10;

    /// Adds --printer, --ppd and --timeout to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    int timeoutInMilliseconds() const { return static_cast<int>(timeout * 1000); }
};

} // namespace labelcut
