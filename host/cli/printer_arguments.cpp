// The command line: how a command is told its printer.
#include "host/cli/printer_arguments.h"

#include <CLI/CLI.hpp>

#include "host/cli/value_checks.h"

namespace labelcut {

void PrinterArguments::addTo(CLI::App& command) {
    auto* printer = command.add_option_group("Printer", "The default printer, or one of");
    printer->add_option("-p,--printer", queue, "Queue of the print service")->type_name("QUEUE");
    printer->add_option("--ppd", ppd, "PPD file of a printer, without any print service")
        ->type_name("FILE");
    printer->require_option(0, 1);
    command
        .add_option("--timeout", timeout,
                    "Seconds to wait for each answer of the print service (10)")
        ->type_name("SECONDS")
        ->check(number("--timeout", 0.1, 3600));
}

} // namespace labelcut
