// The command line: what is printed, how often, and how it lies on its labels.
#include "host/cli/amount_arguments.h"

#include <CLI/CLI.hpp>

#include "host/cli/value_checks.h"
#include "host/cli/wrong_usage.h"
#include "host/core/copies.h"
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

worker::Fit fitOf(const std::string& text) {
    using worker::Fit;
    if (text.empty())
        return Fit::Unchanged;
    if (text == "actual")
        return Fit::Actual;
    if (text == "scale")
        return Fit::Scale;
    if (text != "turn")
        rejectArguments(QStringLiteral("--fit %1: write actual, scale or turn")
                            .arg(QString::fromStdString(text)));
    return Fit::Turn;
}

} // namespace

void AmountArguments::addTo(CLI::App& command) {
    command
        .add_option("FILE", files,
                    "PDF, PostScript, PNG, JPEG, SVG or plain text, taken as one job")
        ->type_name("")
        ->required();
    command.add_option("-n,--copies", copies, "How many of each (1)")
        ->type_name("N")
        ->check(wholeNumber("--copies", 1, kMaxCopies));
    command.add_option("--pages", pages, "Pages counted through all files, such as 1,3,5-7,9-")
        ->type_name("LIST");
}

void AmountArguments::addLayoutTo(CLI::App& command) {
    command.add_flag("--reverse", isReversed, "The last page first");
    command.add_flag("--no-collate", isUncollated,
                     "All copies of a page before the next page, not set by set");
    command
        .add_option("--fit", fit,
                    "Where pages have not the measure of the label: actual, scale or turn")
        ->type_name("HOW");
}

Amount AmountArguments::parsed() const {
    Amount amount;
    for (const std::string& file : files)
        amount.files << nameFromWord(file);
    amount.copies = copies.value_or(1);
    amount.pages = selectionOf(pages);
    amount.isReversed = isReversed;
    amount.isCollated = !isUncollated;
    amount.fit = fitOf(fit);
    return amount;
}

Amount AmountArguments::with(const std::optional<KeptChoices>& preset, Amount amount) const {
    if (preset && !copies)
        amount.copies = preset->copies;
    return amount;
}

} // namespace labelcut
