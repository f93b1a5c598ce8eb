// The command line: "labelcut plan", a job label by label before it is printed.
#include "host/cli/plan_command.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>

#include "host/cli/amount_arguments.h"
#include "host/cli/chosen_printer.h"
#include "host/cli/examples.h"
#include "host/cli/interruption.h"
#include "host/cli/plan_json.h"
#include "host/cli/plan_text.h"
#include "host/cli/print_report.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/job/order.h"
#include "host/plan/printer_plan.h"

namespace labelcut {

namespace {

struct PlanArguments {
    AmountArguments amount;
    PrinterArguments printer;
    SettingArguments settings;
    PresetArgument preset;
    bool json = false;
};

/// What was typed, understood.
struct PlanWish {
    Amount amount;
    Settings asked;
};

int plan(const PlanArguments& arguments, const PlanWish& wish, Runner& runner) {
    interruption::install();
    runner.coreApplication();
    const auto chosen =
        openChosen({arguments.printer, arguments.preset, wish.asked, wish.amount.pages});
    if (!chosen)
        return Runner::fail(chosen.error().sentence);
    const OpenedPrinter& printer = *chosen->printer;
    const Amount amount = arguments.amount.with(chosen->preset, wish.amount);
    const Order order = orderFor(printer, amount);
    const auto document = JobDocument::measure(amount.files, order.paper, &interruption::flag());
    if (!document)
        return Runner::fail(document.error().sentence);
    complainOfRepairs(*document);
    const JobPlan plan(planInputFor(printer, amount,
                                    std::make_shared<DocumentPages>(DocumentPages{
                                        document->measures(), document->pagesOfFiles()})));
    const std::optional<Error> reason = reasonAgainst(order, *document);
    if (plan.labels() == 0)
        return Runner::fail(reason->sentence);
    if (arguments.json)
        writePlanJson(printer.title(), plan, stdout);
    else
        tellPlan({printer.title(), amount.files, &plan,
                  reason ? withWayOut(*reason).sentence : QString()},
                 Runner::say);
    return kDone;
}

} // namespace

void addPlanCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<PlanArguments>();
    CLI::App* command = app.add_subcommand(
        "plan", "Tell what would be printed and cut, label by label, and print nothing");
    arguments->amount.addTo(*command);
    arguments->printer.addTo(*command);
    arguments->settings.addTo(*command);
    arguments->preset.addTo(*command);
    command->add_flag("--json", arguments->json, "Tell it as JSON");
    addExamples(*command, {"labelcut plan labels.pdf",
                           "labelcut plan labels.pdf --ppd tape.ppd --set KvHalfCut=ON --copies 3",
                           "labelcut plan labels.pdf --ppd tape.ppd --pages 2-3 --fit scale --json",
                           "labelcut plan labels.pdf --preset \"Shelf labels\""});
    command->callback([arguments, &runner] {
        const PlanWish wish{arguments->amount.parsed(), arguments->settings.parsed()};
        runner.choose([arguments, wish, &runner] { return plan(*arguments, wish, runner); });
    });
}

} // namespace labelcut
