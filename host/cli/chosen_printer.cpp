// The command line: a printer with the choices that were asked for.
#include "host/cli/chosen_printer.h"

#include <algorithm>

#include "host/cli/setting_arguments.h"
#include "host/core/failure.h"
#include "host/settings/checked_setting.h"
#include "host/settings/constraints.h"
#include "host/settings/custom_value.h"
#include "host/settings/secret_setting.h"

namespace labelcut {

namespace {

bool isAmong(const Settings& settings, const Setting& setting) {
    return std::ranges::find(settings, setting) != settings.end();
}

/// The conflict, and what to add to the command so that what was asked for can stand.
QString conflictSentence(ppd_file_t* ppd, const Conflict& conflict, const Settings& asked) {
    const QString sentence = describe(ppd, conflict);
    if (conflict.size() == 1)
        return sentence +
               QStringLiteral(" Ask for another choice of %1.").arg(conflict.front().keyword);
    bool gaveUp = false;
    for (const Setting& side : conflict) {
        if (!isAmong(asked, side))
            continue;
        const auto changes = proposeResolution(ppd, side, asked, &gaveUp);
        if (!changes || changes->empty())
            continue;
        QStringList sets;
        for (const Setting& change : *changes)
            sets << QStringLiteral("--set %1=%2").arg(change.keyword, change.choice);
        return sentence + QStringLiteral(" Add %1.").arg(sets.join(u' '));
    }
    return sentence + (gaveUp ? u' ' + gaveUpSentence() : QString()) +
           QStringLiteral(" Ask for one of them only.");
}

/// Whether the printer can do what is marked now. @return the reason why not.
std::optional<Error> reasonAgainst(OpenedPrinter& printer, const Settings& asked) {
    if (!printer.shouldPrint())
        return failure(QStringLiteral("A panel of \"%1\" does not let this job be printed; change "
                                      "its choices.")
                           .arg(printer.title()));
    for (const Setting& setting : asked) {
        const QString marked = printer.choice(setting.keyword).value_or(QString());
        // libcups writes a custom value in its own way; that there is one has to do.
        const bool holds =
            isCustomValue(setting.choice) ? isCustomValue(marked) : marked == setting.choice;
        if (!holds)
            return failure(QStringLiteral("%1=%2 does not hold: the printer's panels turn it into "
                                          "%1=%3. Leave it out.")
                               .arg(setting.keyword, shownChoice(printer.ppd(), setting),
                                    shownChoice(printer.ppd(), {setting.keyword, marked})));
    }
    std::vector<Conflict> conflicts = findConflicts(printer.ppd());
    // What the user asked for twice over comes before what a default has a part in.
    std::stable_partition(conflicts.begin(), conflicts.end(), [&](const Conflict& conflict) {
        return std::ranges::all_of(conflict,
                                   [&](const auto& side) { return isAmong(asked, side); });
    });
    if (!conflicts.empty())
        return failure(conflictSentence(printer.ppd(), conflicts.front(), asked));
    return std::nullopt;
}

/// Chooses what was asked for: by the preset, and over it by the arguments.
/// @return it, spelled as the printer spells it.
Result<Settings> choose(OpenedPrinter& printer, const ChoiceRequest& request,
                        const std::optional<KeptChoices>& preset) {
    const auto checked = checkedSettings(printer.ppd(), request.asked);
    if (!checked)
        return checked.error();
    const Settings asked = overridden(preset ? preset->settings : Settings(), *checked);
    printer.setPageRange(request.pages.hull());
    printer.choose(asked);
    printer.insist(asked);
    printer.sayAloud(keywordsOf(asked));
    return asked;
}

} // namespace

Result<ChosenPrinter> openChosen(const ChoiceRequest& request) {
    auto printer = openPrinter(request.printer);
    if (!printer)
        return printer.error();
    auto preset = request.preset.matched(**printer);
    if (!preset)
        return preset.error();
    const Result<Settings> asked = choose(**printer, request, *preset);
    if (!asked)
        return asked.error();
    if (const auto reason = reasonAgainst(**printer, *asked))
        return *reason;
    return ChosenPrinter{std::move(*printer), std::move(*preset)};
}

} // namespace labelcut
