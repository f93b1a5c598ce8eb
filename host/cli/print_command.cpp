// The command line: "labelcut print", the product's main job.
#include "host/cli/print_command.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/cli/examples.h"
#include "host/cli/handling_arguments.h"
#include "host/cli/interruption.h"
#include "host/cli/open_printer.h"
#include "host/cli/preset_argument.h"
#include "host/cli/print_report.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/core/harmless_text.h"
#include "host/job/order.h"
#include "host/presets/preset_store.h"
#include "host/settings/checked_setting.h"
#include "host/settings/constraints.h"
#include "host/settings/custom_value.h"
#include "host/settings/secret_setting.h"

namespace labelcut {

namespace {

/// What was typed.
struct PrintArguments {
    std::vector<std::string> files;
    PrinterArguments printer;
    SettingArguments settings;
    PresetArgument preset;
    HandlingArguments handling;
    std::string pages;
    std::string output;
    std::string title;
};

/// The same, understood.
struct Wish {
    Amount amount;
    Settings asked;
    /// Empty: the files' names say it.
    QString title;
};

/// Throws what is wrong usage.
Wish understood(const PrintArguments& arguments) {
    if (arguments.printer.ppd.empty() != arguments.output.empty())
        rejectArguments(arguments.output.empty()
                            ? QStringLiteral("--ppd needs -o FILE, where the PostScript goes")
                            : QStringLiteral("-o goes with --ppd; a queue prints on its own"));
    Wish wish;
    for (const std::string& file : arguments.files)
        wish.amount.files << nameFromWord(file);
    wish.asked = arguments.settings.parsed();
    if (!arguments.pages.empty()) {
        const auto pages = parsePageSelection(QString::fromStdString(arguments.pages));
        if (!pages)
            rejectArguments(QStringLiteral("--pages %1: write it as 3, 3-5, 3- or -5, or several "
                                           "of these such as 1,3,5-7,9-")
                                .arg(QString::fromStdString(arguments.pages)));
        wish.amount.pages = *pages;
    }
    wish.title = harmless(QString::fromStdString(arguments.title));
    return wish;
}

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

/// The failure with the arguments that are a way out of it.
Error withWayOut(Error reason) {
    if (reason.kind == ErrorKind::EdgeLost)
        reason.sentence +=
            QStringLiteral(" Use --fit scale, --fit turn or --fit actual, or another "
                           "--set PageSize=….");
    return reason;
}

/// Writes the job or sends it. @return where it went, for people.
Result<QString> deliver(const Order& order, const JobDocument& document,
                        const PrinterArguments& arguments) {
    const CancelFlag* cancel = &interruption::flag();
    if (const auto reason = reasonAgainst(order, document))
        return withWayOut(*reason);
    const QString* queue = queueName(order.printer);
    if (!queue) {
        const Result<qint64> written = writeJob(order, document, cancel);
        if (!written)
            return written.error();
        return QStringLiteral("the file \"%1\"").arg(order.outputPath);
    }
    const Result<JobToSend> job = jobFor(order, document, cancel);
    if (!job)
        return job.error();
    const int timeout = arguments.timeoutInMilliseconds();
    const Result<int> id = submit(CupsConnection(), *job, {timeout, timeout}, cancel);
    if (!id)
        return id.error();
    return QStringLiteral("the queue \"%1\" as job %1-%2").arg(*queue, QString::number(*id));
}

/// A queue that would not take the job says so before work is done on it.
std::optional<Error> reasonOfQueue(const OpenedPrinter& printer, const CallLimits& limits) {
    if (!printer.queue() || printer.queue()->isAccepting)
        return std::nullopt;
    JobRequest request;
    request.queue = printer.queue()->name;
    const Result<Done> valid = CupsConnection().validateJob(request, limits);
    return valid ? std::nullopt : std::optional(valid.error());
}

void noteRest(const OpenedPrinter& printer, const JobDocument& document) {
    for (const QString& file : document.repaired())
        Runner::complain(QStringLiteral("\"%1\" was damaged and had to be repaired; look whether "
                                        "the labels are complete.")
                             .arg(file));
    if (printer.queue() && printer.queue()->state == PMPrinterState::Stopped)
        Runner::complain(QStringLiteral("The queue \"%1\" is paused; the job waits until it is "
                                        "resumed (\"cupsenable %1\").")
                             .arg(printer.queue()->name));
}

/// Chooses what was asked for: by the preset, and over it by the arguments.
/// @return it, spelled as the printer spells it.
Result<Settings> choose(OpenedPrinter& printer, const Wish& wish,
                        const std::optional<KeptChoices>& preset) {
    const auto checked = checkedSettings(printer.ppd(), wish.asked);
    if (!checked)
        return checked.error();
    const Settings asked = overridden(preset ? preset->settings : Settings(), *checked);
    printer.setPageRange(wish.amount.pages.hull());
    printer.choose(asked);
    printer.insist(asked);
    printer.sayAloud(keywordsOf(asked));
    return asked;
}

int print(const PrintArguments& arguments, const Wish& wish, Runner& runner) {
    interruption::install();
    runner.coreApplication();
    const auto opened = openPrinter(arguments.printer);
    if (!opened)
        return Runner::fail(opened.error().sentence);
    OpenedPrinter& printer = **opened;
    const auto preset = arguments.preset.matched(printer);
    if (!preset)
        return Runner::fail(preset.error().sentence);
    const Result<Settings> asked = choose(printer, wish, *preset);
    if (!asked)
        return Runner::fail(asked.error().sentence);
    if (const auto reason = reasonAgainst(printer, *asked))
        return Runner::fail(reason->sentence);
    if (const auto reason = reasonOfQueue(
            printer, {arguments.printer.timeoutInMilliseconds(), &interruption::flag()}))
        return Runner::fail(reason->sentence);
    Amount amount = wish.amount;
    handle(amount, arguments.handling.over(*preset ? (*preset)->handling : Handling()));
    Order order = orderFor(printer, amount);
    order.outputPath = nameFromWord(arguments.output);
    order.inUse << PresetStore().filePath(identityOf(printer));
    if (!wish.title.isEmpty())
        order.title = wish.title;
    const auto document = prepareDocument(order, &interruption::flag());
    if (!document)
        return Runner::fail(document.error().sentence);
    const auto target = deliver(order, *document, arguments.printer);
    if (!target)
        return Runner::fail(target.error().sentence);
    noteRest(printer, *document);
    Runner::say(toText(PrintReport{&order, &*document, *target, printer.ppd()}));
    return kDone;
}

} // namespace

void addPrintCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<PrintArguments>();
    CLI::App* command = app.add_subcommand("print", "Print files on a label printer");
    command
        ->add_option("FILE", arguments->files,
                     "PDF, PostScript, PNG, JPEG, SVG or plain text, printed as one job")
        ->type_name("")
        ->required();
    arguments->printer.addTo(*command);
    arguments->settings.addTo(*command);
    arguments->preset.addTo(*command);
    arguments->handling.addTo(*command);
    command
        ->add_option("--pages", arguments->pages,
                     "Pages counted through all files, such as 1,3,5-7,9-")
        ->type_name("LIST");
    command
        ->add_option("-o,--output", arguments->output,
                     "Where the PostScript goes that is made for --ppd")
        ->type_name("FILE");
    command->add_option("-t,--title", arguments->title, "Title of the job (the files' names)")
        ->type_name("TEXT");
    addExamples(*command, {"labelcut print labels.pdf",
                           "labelcut print labels.pdf --printer Tape --set KvHalfCut=ON --copies 3",
                           "labelcut print labels.pdf --ppd tape.ppd --pages 2-3 -o /tmp/job.ps",
                           "labelcut print labels.pdf --fit scale --reverse",
                           "labelcut print labels.pdf --preset \"Shelf labels\""});
    command->callback([arguments, &runner] {
        const Wish wish = understood(*arguments);
        runner.choose([arguments, wish, &runner] { return print(*arguments, wish, runner); });
    });
}

} // namespace labelcut
