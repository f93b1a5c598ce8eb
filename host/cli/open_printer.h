// The command line: the printer that a command is about, open.
#pragma once

#include <memory>

#include "host/cli/printer_arguments.h"
#include "host/core/result.h"
#include "host/printers/opened_printer.h"

namespace labelcut {

/// The printer that the arguments name, else the default queue, which is told on standard error;
/// the print service may be asked for it. @return the failure is a sentence for the user, such as
/// when there is no default.
Result<PrinterRef> namedOrDefaultPrinter(const PrinterArguments& arguments);

/// Opens that printer with every panel that all plug-ins offer; none has a view. What was left out
/// on the way (saved options, plug-ins that cannot be used) and what panels complain of later goes
/// to standard error. An application object must exist. @return the failure is a sentence for the
/// user.
Result<std::unique_ptr<OpenedPrinter>> openPrinter(const PrinterArguments& arguments);

} // namespace labelcut
