// The command line: "labelcut options", what the panels offer.
#include "host/cli/options_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <CLI/CLI.hpp>

#include <memory>

#include "host/cli/examples.h"
#include "host/cli/json_text.h"
#include "host/cli/open_printer.h"
#include "host/cli/preset_argument.h"
#include "host/cli/runner.h"

namespace labelcut {

namespace {

struct OptionsArguments {
    PrinterArguments printer;
    PresetArgument preset;
    bool json = false;
};

/// One option as it is listed. Keywords and titles as the PPD has them, in the running language.
struct OfferedOption {
    QString keyword;
    QString title;
    /// Empty: none.
    QString defaultChoice;
    QString current;
    std::vector<PpdView::Choice> choices;
};

OfferedOption offered(const OpenedPrinter& printer, const QString& keyword) {
    const PpdView ppd = printer.view();
    OfferedOption row{keyword, ppd.title(keyword), ppd.defaultChoice(keyword).value_or(QString()),
                      printer.choice(keyword).value_or(QString()), ppd.choices(keyword)};
    return row;
}

QJsonValue textOrNull(const QString& text) {
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject toJson(const OfferedOption& row) {
    QJsonArray choices;
    for (const PpdView::Choice& choice : row.choices)
        choices.append(QJsonObject{{QStringLiteral("keyword"), choice.keyword},
                                   {QStringLiteral("title"), choice.title}});
    return {{QStringLiteral("keyword"), row.keyword},
            {QStringLiteral("title"), row.title},
            {QStringLiteral("default"), textOrNull(row.defaultChoice)},
            {QStringLiteral("current"), textOrNull(row.current)},
            {QStringLiteral("choices"), choices}};
}

/// "OFF (Off)", or only the keyword where the title says the same.
QString choiceText(const PpdView::Choice& choice) {
    return choice.keyword == choice.title
               ? choice.keyword
               : QStringLiteral("%1 (%2)").arg(choice.keyword, choice.title);
}

/// Two lines: keyword and title, then the choices, the current one starred.
QString toText(const OfferedOption& row) {
    QStringList choices;
    for (const PpdView::Choice& choice : row.choices)
        choices << (choice.keyword == row.current ? QStringLiteral("*") : QString()) +
                       choiceText(choice);
    return QStringLiteral("%1 (%2), default %3\n    %4")
        .arg(row.keyword, row.title,
             row.defaultChoice.isEmpty() ? QStringLiteral("none") : row.defaultChoice,
             choices.join(QStringLiteral(", ")));
}

int list(const OptionsArguments& arguments, Runner& runner) {
    runner.coreApplication();
    const auto printer = openPrinter(arguments.printer);
    if (!printer)
        return Runner::fail(printer.error().sentence);
    const auto preset = arguments.preset.matched(**printer);
    if (!preset)
        return Runner::fail(preset.error().sentence);
    if (*preset)
        (*printer)->choose((*preset)->settings);
    QJsonArray rows;
    QStringList lines;
    for (const QString& keyword : (*printer)->panelKeywords()) {
        const OfferedOption row = offered(**printer, keyword);
        rows.append(toJson(row));
        lines << toText(row);
    }
    if (arguments.json) {
        const QJsonObject all{{QStringLiteral("printer"), (*printer)->title()},
                              {QStringLiteral("options"), rows}};
        Runner::say(harmlessJson(QJsonDocument(all).toJson()).trimmed());
    } else if (lines.isEmpty()) {
        Runner::say(
            QStringLiteral("\"%1\" offers none of the panels' options.").arg((*printer)->title()));
    } else {
        Runner::say(lines.join(u'\n'));
    }
    return kDone;
}

} // namespace

void addOptionsCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<OptionsArguments>();
    CLI::App* command = app.add_subcommand(
        "options", "List the options of the printer's panels, the current choice starred");
    arguments->printer.addTo(*command);
    arguments->preset.addTo(*command);
    command->add_flag("--json", arguments->json, "List them as JSON");
    addExamples(*command, {"labelcut options", "labelcut options --printer Tape --json",
                           "labelcut options --ppd tape.ppd --preset \"Shelf labels\""});
    command->callback([arguments, &runner] {
        runner.choose([arguments, &runner] { return list(*arguments, runner); });
    });
}

} // namespace labelcut
