// The command line: "labelcut options", what the panels offer.
#include "host/cli/options_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <CLI/CLI.hpp>

#include <memory>
#include <span>

#include "host/cli/opened_printer.h"
#include "host/cli/preset_argument.h"
#include "host/cli/runner.h"
#include "host/core/harmless_text.h"

namespace labelcut {

namespace {

struct Arguments {
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
    std::vector<std::pair<QString, QString>> choices;
};

OfferedOption offered(OpenedPrinter& printer, const QString& keyword) {
    const ppd_option_t* option = ppd::findOption(printer.ppd(), keyword.toUtf8().constData());
    OfferedOption row;
    row.keyword = QString::fromUtf8(option->keyword);
    row.title = QString::fromUtf8(option->text);
    row.current = printer.host().marked(keyword).value_or(QString());
    for (const ppd_choice_t& choice :
         std::span(option->choices, static_cast<std::size_t>(option->num_choices))) {
        row.choices.emplace_back(QString::fromUtf8(choice.choice), QString::fromUtf8(choice.text));
        // The PPD may name a default that it lacks, or in another case.
        if (qstricmp(choice.choice, option->defchoice) == 0)
            row.defaultChoice = row.choices.back().first;
    }
    return row;
}

/// JSON that says the same without any character that a terminal would act on.
QString escaped(const QByteArray& json) {
    QString text;
    for (const QChar c : QString::fromUtf8(json)) {
        if (c == u'\n' || !isActedOn(c))
            text += c;
        else
            text += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return text;
}

QJsonValue textOrNull(const QString& text) {
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject toJson(const OfferedOption& row) {
    QJsonArray choices;
    for (const auto& [keyword, title] : row.choices)
        choices.append(
            QJsonObject{{QStringLiteral("keyword"), keyword}, {QStringLiteral("title"), title}});
    return {{QStringLiteral("keyword"), row.keyword},
            {QStringLiteral("title"), row.title},
            {QStringLiteral("default"), textOrNull(row.defaultChoice)},
            {QStringLiteral("current"), textOrNull(row.current)},
            {QStringLiteral("choices"), choices}};
}

/// "OFF (Off)", or only the keyword where the title says the same.
QString choiceText(const std::pair<QString, QString>& choice) {
    return choice.first == choice.second
               ? choice.first
               : QStringLiteral("%1 (%2)").arg(choice.first, choice.second);
}

/// Two lines: keyword and title, then the choices, the current one starred.
QString toText(const OfferedOption& row) {
    QStringList choices;
    for (const auto& choice : row.choices)
        choices << (choice.first == row.current ? QStringLiteral("*") : QString()) +
                       choiceText(choice);
    return QStringLiteral("%1 (%2), default %3\n    %4")
        .arg(row.keyword, row.title,
             row.defaultChoice.isEmpty() ? QStringLiteral("none") : row.defaultChoice,
             choices.join(QStringLiteral(", ")));
}

int list(const Arguments& arguments, Runner& runner) {
    runner.coreApplication();
    const auto printer = OpenedPrinter::open(arguments.printer);
    if (!printer)
        return Runner::fail(printer.error().sentence);
    for (const QString& note : (*printer)->notes())
        Runner::complain(note);
    const auto preset = arguments.preset.matched(**printer);
    if (!preset)
        return Runner::fail(preset.error().sentence);
    if (*preset)
        (*printer)->apply((*preset)->settings);
    QJsonArray rows;
    QStringList lines;
    for (const QString& keyword : (*printer)->panels().keywords()) {
        const OfferedOption row = offered(**printer, keyword);
        rows.append(toJson(row));
        lines << toText(row);
    }
    if (arguments.json) {
        const QJsonObject all{{QStringLiteral("printer"), (*printer)->title()},
                              {QStringLiteral("options"), rows}};
        Runner::say(escaped(QJsonDocument(all).toJson()).trimmed());
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
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "options", "List the options of the printer's panels, the current choice starred");
    arguments->printer.addTo(*command);
    arguments->preset.addTo(*command);
    command->add_flag("--json", arguments->json, "List them as JSON");
    command->callback([arguments, &runner] {
        runner.choose([arguments, &runner] { return list(*arguments, runner); });
    });
}

} // namespace labelcut
