// Labelcut's program.
#include <csignal>

#include "host/cli/interruption.h"
#include "host/cli/options_command.h"
#include "host/cli/presets_command.h"
#include "host/cli/print_command.h"
#include "host/cli/runner.h"
#include "host/cli/widget_commands.h"

int main(int argc, char** argv) {
    // A file that may not grow and a reader that went away are failures to report, no reason to
    // die and leave half a file behind.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    labelcut::Runner runner(argc, argv);
    const int status = runner.run({labelcut::addPrintCommand, labelcut::addOptionsCommand,
                                   labelcut::addPresetsCommand, labelcut::addDialogCommand,
                                   labelcut::addPanelScriptCommand, labelcut::addSnapshotCommand},
                                  LABELCUT_VERSION);
    labelcut::interruption::passOn();
    return labelcut::Runner::finish(status);
}
