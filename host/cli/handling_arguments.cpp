// The command line: how often, in which order and in which size pages are printed.
#include "host/cli/handling_arguments.h"

#include <CLI/CLI.hpp>

#include "host/cli/value_checks.h"
#include "host/core/copies.h"

namespace labelcut {

void HandlingArguments::addTo(CLI::App& command) {
    command.add_option("-n,--copies", copies, "How many of each (1)")
        ->type_name("N")
        ->check(wholeNumber("--copies", 1, kMaxCopies));
    command.add_flag("--reverse", isReversed, "The last page first");
    command.add_flag("--no-collate", isUncollated, "Every copy of a page, then the next page");
    command
        .add_option("--fit", fit,
                    "Pages of other measures: scale them, turn them, or cut them off (actual)")
        ->type_name("HOW")
        ->check(labelcut::fit("--fit"));
}

Handling HandlingArguments::over(const Handling& kept) const {
    return {copies.value_or(kept.copies), isReversed || kept.isReversed,
            !isUncollated && kept.isCollated,
            fitNamed(QString::fromStdString(fit)).value_or(kept.fit)};
}

} // namespace labelcut
