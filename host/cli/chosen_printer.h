// The command line: a printer with the choices that were asked for.
#pragma once

#include <memory>
#include <optional>

#include "host/cli/open_printer.h"
#include "host/cli/preset_argument.h"
#include "host/cli/printer_arguments.h"
#include "host/documents/paper.h"

namespace labelcut {

/// What a command was asked for, of those that lead to a job.
struct ChoiceRequest {
    PrinterArguments printer;
    PresetArgument preset;
    /// What was named outright, which comes before the preset.
    Settings asked;
    PageSelection pages;
};

struct ChosenPrinter {
    /// Never null.
    std::unique_ptr<OpenedPrinter> printer;
    /// Nothing when none was named.
    std::optional<KeptChoices> preset;
};

/// Opens the printer and makes the choices. The failure is a sentence: why there is no such
/// printer, or why it cannot print with these choices.
Result<ChosenPrinter> openChosen(const ChoiceRequest& request);

} // namespace labelcut
