// The command line: what is printed, how often, and how it lies on its labels.
#include "host/cli/amount_arguments.h"

#include <CLI/CLI.hpp>

#include "host/cli/wrong_usage.h"
#include "host/core/file_name.h"

namespace labelcut {

namespace {

PageSelection selectionOf(const std::string& text) {
    if (text.empty())
        return {};
    const QString pages = QString::fromStdString(text);
    const auto selection = parsePageSelection(pages);
    if (!selection)
        rejectArguments(QStringLiteral("--pages %1: write it as 3, 3-5, 3- or -5, or several of "
                                       "these such as 1,3,5-7,9-")
                            .arg(pages));
    return *selection;
}

} // namespace

void AmountArguments::addTo(CLI::App& command) {
    command
        .add_option("FILE", files,
                    "PDF, PostScript, PNG, JPEG, SVG or plain text, taken as one job")
        ->type_name("")
        ->required();
    handling.addTo(command);
    command.add_option("--pages", pages, "Pages counted through all files, such as 1,3,5-7,9-")
        ->type_name("LIST");
}

Amount AmountArguments::parsed() const {
    Amount amount;
    for (const std::string& file : files)
        amount.files << nameFromWord(file);
    amount.pages = selectionOf(pages);
    return amount;
}

Amount AmountArguments::with(const std::optional<KeptChoices>& preset, Amount amount) const {
    handle(amount, handling.over(preset ? preset->handling : Handling()));
    return amount;
}

Error withWayOut(Error reason) {
    if (reason.kind == ErrorKind::EdgeLost)
        reason.sentence +=
            QStringLiteral(" Use --fit scale, --fit turn or --fit actual, or another "
                           "--set PageSize=….");
    return reason;
}

} // namespace labelcut
