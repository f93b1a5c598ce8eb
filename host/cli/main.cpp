// Labelcut's program.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include "host/cli/interruption.h"
#include "host/cli/options_command.h"
#include "host/cli/plan_command.h"
#include "host/cli/presets_command.h"
#include "host/cli/print_command.h"
#include "host/cli/runner.h"
#include "host/cli/snapshot_command.h"
#include "host/cli/widget_commands.h"
#include "host/core/user_folders.h"

namespace {

/// A file that is opened where a standard one was closed would be given what is meant for that.
/// These take its place, and refuse it.
void fillStandardFiles() {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(standard, F_GETFD) < 0)
            static_cast<void>(open("/dev/null", standard == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
}

} // namespace

int main(int argc, char** argv) {
    fillStandardFiles();
    labelcut::mendFoldersInEnvironment();
    // A file that may not grow and a reader that went away are failures to report, no reason to
    // die and leave half a file behind.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    labelcut::Runner runner(argc, argv);
    const int status = runner.run({labelcut::addPrintCommand, labelcut::addPlanCommand,
                                   labelcut::addOptionsCommand, labelcut::addPresetsCommand,
                                   labelcut::addDialogCommand, labelcut::addPanelScriptCommand,
                                   labelcut::addSnapshotCommand},
                                  LABELCUT_VERSION);
    labelcut::interruption::passOn();
    return labelcut::Runner::finish(status);
}
