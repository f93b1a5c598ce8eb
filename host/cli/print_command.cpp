// The command line: "labelcut print", the product's main job.
#include "host/cli/print_command.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>

#include "host/cli/amount_arguments.h"
#include "host/cli/chosen_printer.h"
#include "host/cli/examples.h"
#include "host/cli/interruption.h"
#include "host/cli/print_report.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/core/harmless_text.h"
#include "host/job/order.h"
#include "host/presets/preset_store.h"

namespace labelcut {

namespace {

/// What was typed.
struct PrintArguments {
    AmountArguments amount;
    PrinterArguments printer;
    SettingArguments settings;
    PresetArgument preset;
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
    wish.amount = arguments.amount.parsed();
    wish.asked = arguments.settings.parsed();
    wish.title = harmless(QString::fromStdString(arguments.title));
    return wish;
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
    complainOfRepairs(document);
    if (printer.queue() && printer.queue()->state == PMPrinterState::Stopped)
        Runner::complain(QStringLiteral("The queue \"%1\" is paused; the job waits until it is "
                                        "resumed (\"cupsenable %1\").")
                             .arg(printer.queue()->name));
}

int print(const PrintArguments& arguments, const Wish& wish, Runner& runner) {
    interruption::install();
    runner.coreApplication();
    const auto chosen =
        openChosen({arguments.printer, arguments.preset, wish.asked, wish.amount.pages});
    if (!chosen)
        return Runner::fail(chosen.error().sentence);
    OpenedPrinter& printer = *chosen->printer;
    if (const auto reason = reasonOfQueue(
            printer, {arguments.printer.timeoutInMilliseconds(), &interruption::flag()}))
        return Runner::fail(reason->sentence);
    Order order = orderFor(printer, arguments.amount.with(chosen->preset, wish.amount));
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
    arguments->amount.addTo(*command);
    arguments->printer.addTo(*command);
    arguments->settings.addTo(*command);
    arguments->preset.addTo(*command);
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
