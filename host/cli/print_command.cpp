// The command line: "labelcut print", the product's main job.
#include "host/cli/print_command.h"

#include <QFile>
#include <QFileInfo>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/cli/interruption.h"
#include "host/cli/opened_printer.h"
#include "host/cli/preset_argument.h"
#include "host/cli/print_report.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/core/copies.h"
#include "host/core/failure.h"
#include "host/core/harmless_text.h"
#include "host/documents/documents.h"
#include "host/job/cups_job.h"
#include "host/job/marked_paper.h"
#include "host/job/postscript_job.h"
#include "host/settings/checked_setting.h"
#include "host/settings/constraints.h"

namespace labelcut {

namespace {

/// What was typed.
struct Arguments {
    std::vector<std::string> files;
    PrinterArguments printer;
    SettingArguments settings;
    PresetArgument preset;
    int copies = 1;
    /// Whether the user said how many, or a preset may.
    bool copiesGiven = false;
    std::string pages;
    std::string output;
    std::string title;
};

/// The same, understood.
struct Order {
    QStringList files;
    Settings asked;
    PageRange pages;
    QString title;
};

/// Throws what is wrong usage.
Order understood(const Arguments& arguments) {
    if (arguments.printer.ppd.empty() != arguments.output.empty())
        rejectArguments(arguments.output.empty()
                            ? QStringLiteral("--ppd needs -o FILE, where the PostScript goes")
                            : QStringLiteral("-o goes with --ppd; a queue prints on its own"));
    Order order;
    for (const std::string& file : arguments.files)
        order.files << QFile::decodeName(file.c_str());
    order.asked = arguments.settings.parsed();
    if (!arguments.pages.empty()) {
        const auto range = parsePageRange(QString::fromStdString(arguments.pages));
        if (!range)
            rejectArguments(QStringLiteral("--pages %1: write it as 3, 3-5, 3- or -5")
                                .arg(QString::fromStdString(arguments.pages)));
        order.pages = *range;
    }
    order.title = harmless(arguments.title.empty() ? QFileInfo(order.files.front()).fileName()
                                                   : QString::fromStdString(arguments.title));
    return order;
}

/// Drawing needs more of Qt, which takes its time; most files need none.
void makeApplication(const Order& order, Runner& runner) {
    const bool draws = std::ranges::any_of(order.files, [](const QString& file) {
        const Result<DocumentKind> kind = documentKind(file);
        return kind && isDrawn(*kind);
    });
    if (draws)
        runner.drawingApplication();
    else
        runner.coreApplication();
}

bool isAmong(const Settings& settings, const Setting& setting) {
    return std::ranges::find(settings, setting) != settings.end();
}

/// The conflict, and what to add to the command so that what was asked for can stand.
QString conflictSentence(ppd_file_t* ppd, const Conflict& conflict, const Settings& asked) {
    QString sentence = describe(ppd, conflict);
    for (const Setting& side : conflict) {
        if (!isAmong(asked, side))
            continue;
        const auto changes = proposeResolution(ppd, side, asked);
        if (!changes || changes->empty())
            continue;
        QStringList sets;
        for (const Setting& change : *changes)
            sets << QStringLiteral("--set %1=%2").arg(change.keyword, change.choice);
        return sentence + QStringLiteral(" Add %1.").arg(sets.join(u' '));
    }
    return sentence + QStringLiteral(" Ask for one of them only.");
}

/// Whether the printer can do what is marked now. @return the reason why not.
std::optional<Error> reasonAgainst(OpenedPrinter& printer, const Settings& asked) {
    if (!printer.panels().shouldPrint())
        return failure(QStringLiteral("A panel of \"%1\" does not let this job be printed; change "
                                      "its choices.")
                           .arg(printer.title()));
    for (const Setting& setting : asked) {
        const QString marked = printer.host().marked(setting.keyword).value_or(QString());
        const bool isCustom =
            setting.choice.startsWith(QLatin1String("Custom.")) || setting.choice.startsWith(u'{');
        if (isCustom ? !marked.startsWith(QLatin1String("Custom")) : marked != setting.choice)
            return failure(QStringLiteral("%1=%2 does not hold: the printer's panels turn it into "
                                          "%1=%3. Leave it out.")
                               .arg(setting.keyword, setting.choice, marked));
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

/// Writes the job or sends it. @return where it went, for people.
Result<QString> deliver(const Arguments& arguments, const Order& order, OpenedPrinter& printer,
                        const JobDocument& document, const Settings& settings) {
    const QString user = CupsConnection::userName();
    if (!printer.queue()) {
        const PostScriptJob job{printer.ppd(),    &document,   order.title,          user,
                                arguments.copies, order.pages, &interruption::flag()};
        const QString path = QFile::decodeName(arguments.output.c_str());
        const Result<qint64> size = writePostScript(job, path);
        if (!size)
            return size.error();
        return QStringLiteral("the file \"%1\"").arg(path);
    }
    const CupsJob job{printer.queue()->name, &document,  settings, order.title, user,
                      arguments.copies,      order.pages};
    const CallLimits limits{arguments.printer.timeoutInMilliseconds(), &interruption::flag()};
    const Result<int> id = sendToQueue(printer.service(), job, limits);
    if (!id)
        return id.error();
    return QStringLiteral("the queue \"%1\" as job %1-%2").arg(job.queue, QString::number(*id));
}

/// A queue that would not take the job says so before work is done on it.
std::optional<Error> reasonOfQueue(const OpenedPrinter& printer, const CallLimits& limits) {
    if (!printer.queue() || printer.queue()->isAccepting)
        return std::nullopt;
    JobRequest request;
    request.queue = printer.queue()->name;
    const Result<Done> valid = printer.service().validateJob(request, limits);
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

int print(Arguments arguments, const Order& order, Runner& runner) {
    interruption::install();
    makeApplication(order, runner);
    const auto opened = OpenedPrinter::open(arguments.printer);
    if (!opened)
        return Runner::fail(opened.error().sentence);
    OpenedPrinter& printer = **opened;
    for (const QString& note : printer.notes())
        Runner::complain(note);
    const auto preset = arguments.preset.matched(printer);
    if (!preset)
        return Runner::fail(preset.error().sentence);
    if (*preset && !arguments.copiesGiven)
        arguments.copies = (*preset)->copies;
    const auto checked = checkedSettings(printer.ppd(), order.asked);
    if (!checked)
        return Runner::fail(checked.error().sentence);
    Settings asked = printer.savedChoices();
    if (*preset)
        asked = overridden(std::move(asked), (*preset)->settings);
    asked = overridden(std::move(asked), *checked);
    printer.apply(asked);
    const std::uint32_t last = order.pages.last == PageRange::kToTheEnd
                                   ? kLastPageOfAll
                                   : static_cast<std::uint32_t>(order.pages.last);
    printer.host().settings().setPageRange(static_cast<std::uint32_t>(order.pages.first), last,
                                           false);
    if (const auto reason = reasonAgainst(printer, asked))
        return Runner::fail(reason->sentence);
    const CallLimits limits{arguments.printer.timeoutInMilliseconds(), &interruption::flag()};
    if (const auto reason = reasonOfQueue(printer, limits))
        return Runner::fail(reason->sentence);
    const auto document =
        JobDocument::prepare(order.files, markedPaper(printer.ppd()), &interruption::flag());
    if (!document)
        return Runner::fail(document.error().sentence);
    const auto settings = jobSettings(printer.ppd(), printer.panels().keywords(), asked);
    const auto target = deliver(arguments, order, printer, *document, settings);
    if (!target)
        return Runner::fail(target.error().sentence);
    noteRest(printer, *document);
    Runner::say(toText(PrintReport{order.files, &*document, order.pages, arguments.copies,
                                   printer.title(), *target, printer.ppd(), settings}));
    return kDone;
}

} // namespace

void addPrintCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand("print", "Print files on a label printer");
    command
        ->add_option("files", arguments->files,
                     "PDF, PostScript, PNG, JPEG, SVG or plain text, printed as one job")
        ->type_name("FILE")
        ->required();
    arguments->printer.addTo(*command);
    arguments->settings.addTo(*command);
    arguments->preset.addTo(*command);
    CLI::Option* copies =
        command->add_option("-n,--copies", arguments->copies, "How many of each (1)")
            ->type_name("N")
            ->check(CLI::Range(1, kMaxCopies));
    command->add_option("--pages", arguments->pages, "Pages counted through all files, such as 3-5")
        ->type_name("A-B");
    command
        ->add_option("-o,--output", arguments->output,
                     "Where the PostScript goes that is made for --ppd")
        ->type_name("FILE");
    command->add_option("-t,--title", arguments->title, "Title of the job (the first file's name)")
        ->type_name("TEXT");
    command->callback([arguments, copies, &runner] {
        arguments->copiesGiven = copies->count() > 0;
        const Order order = understood(*arguments);
        runner.choose([arguments, order, &runner] { return print(*arguments, order, runner); });
    });
}

} // namespace labelcut
