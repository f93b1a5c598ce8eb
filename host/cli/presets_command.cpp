// The command line: "labelcut presets", named sets of choices for a printer.
#include "host/cli/presets_command.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>

#include "host/cli/examples.h"
#include "host/cli/handling_arguments.h"
#include "host/cli/open_printer.h"
#include "host/cli/printer_arguments.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/presets/preset_commands.h"
#include "host/settings/secret_setting.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// What was typed; each sub-command uses its part.
struct PresetsArguments {
    PrinterArguments printer;
    SettingArguments settings;
    std::string name;
    std::string newName;
    HandlingArguments handling;
    bool replace = false;
};

Overwrite overwrite(const PresetsArguments& arguments) {
    return arguments.replace ? Overwrite::Yes : Overwrite::No;
}

/// A printer as presets know it.
struct PresetPrinter {
    PrinterIdentity identity;
    /// Null where it was not needed.
    ppd::File ppd;
};

/// @param needsPpd  a queue's PPD is fetched only then, so that the rest works without a service.
Result<PresetPrinter> presetPrinter(const PresetsArguments& arguments, bool needsPpd) {
    const Result<PrinterRef> printer = namedOrDefaultPrinter(arguments.printer);
    if (!printer)
        return printer.error();
    const QString* queue = queueName(*printer);
    if (queue && !needsPpd)
        return PresetPrinter{PrinterIdentity::forQueue(*queue), nullptr};
    Result<FoundPrinter> found = findPrinter(*printer, CupsConnection(),
                                             {arguments.printer.timeoutInMilliseconds(), nullptr});
    if (!found)
        return found.error();
    const PrinterIdentity identity =
        queue ? PrinterIdentity::forQueue(*queue) : PrinterIdentity::forPpd(found->ppd.get());
    return PresetPrinter{identity, std::move(found->ppd)};
}

using Action = Result<PresetOutput> (*)(const PresetsArguments& arguments,
                                        const PresetPrinter& printer);

Result<PresetOutput> list(const PresetsArguments&, const PresetPrinter& printer) {
    return presetcommands::list(PresetStore(), printer.identity);
}

Result<PresetOutput> show(const PresetsArguments& arguments, const PresetPrinter& printer) {
    return presetcommands::show(PresetStore(), printer.identity,
                                QString::fromStdString(arguments.name), printer.ppd.get());
}

Result<PresetOutput> save(const PresetsArguments& arguments, const PresetPrinter& printer) {
    const auto choices = checkedSettings(printer.ppd.get(), arguments.settings.parsed());
    if (!choices)
        return choices.error();
    Settings kept = *choices;
    const QStringList secrets = takeSecrets(printer.ppd.get(), kept);
    PresetStore store;
    Result<PresetOutput> output = presetcommands::save(
        store, printer.identity,
        Preset::of(QString::fromStdString(arguments.name), kept, arguments.handling.over({})),
        overwrite(arguments));
    if (output) {
        for (const QString& title : secrets)
            output->warnings << hostText("PasswordNotKept").arg(title);
    }
    return output;
}

Result<PresetOutput> remove(const PresetsArguments& arguments, const PresetPrinter& printer) {
    PresetStore store;
    return presetcommands::remove(store, printer.identity, QString::fromStdString(arguments.name));
}

Result<PresetOutput> rename(const PresetsArguments& arguments, const PresetPrinter& printer) {
    PresetStore store;
    return presetcommands::rename(store, printer.identity, QString::fromStdString(arguments.name),
                                  QString::fromStdString(arguments.newName), overwrite(arguments));
}

int run(const PresetsArguments& arguments, bool needsPpd, Action action, Runner& runner) {
    runner.coreApplication();
    const Result<PresetPrinter> printer = presetPrinter(arguments, needsPpd);
    if (!printer)
        return Runner::fail(printer.error().sentence);
    const Result<PresetOutput> output = action(arguments, *printer);
    if (!output)
        return Runner::fail(output.error().sentence);
    for (const QString& warning : output->warnings)
        Runner::complain(warning);
    for (const QString& line : output->lines)
        Runner::say(line);
    return kDone;
}

/// Adds one of the sub-commands. @return it, for what only it takes.
CLI::App& addAction(CLI::App& presets, Runner& runner,
                    const std::shared_ptr<PresetsArguments>& arguments, const char* name,
                    const char* help, bool needsPpd, Action action) {
    CLI::App* command = presets.add_subcommand(name, help);
    arguments->printer.addTo(*command);
    command->callback([arguments, needsPpd, action, &runner] {
        arguments->settings.parsed(); // wrong usage is to be told while arguments are parsed
        runner.choose([arguments, needsPpd, action, &runner] {
            return run(*arguments, needsPpd, action, runner);
        });
    });
    return *command;
}

void addName(CLI::App& command, std::string& name, const char* help, const char* option = "NAME") {
    command.add_option(option, name, help)->type_name("")->required();
}

} // namespace

void addPresetsCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<PresetsArguments>();
    CLI::App* presets = app.add_subcommand("presets", "Keep choices for a printer under a name");
    presets->require_subcommand(1);
    addExamples(*presets, {"labelcut presets list",
                           "labelcut presets save \"Shelf labels\" --set KvHalfCut=ON"});
    const auto add = [&](const char* name, const char* help, bool needsPpd,
                         Action action) -> CLI::App& {
        return addAction(*presets, runner, arguments, name, help, needsPpd, action);
    };

    CLI::App& all = add("list", "List the names of a printer's presets", false, list);
    addExamples(all, {"labelcut presets list", "labelcut presets list --ppd tape.ppd"});
    CLI::App& shown = add("show", "Show what is in a preset", false, show);
    addName(shown, arguments->name, "The preset");
    addExamples(shown, {"labelcut presets show \"Shelf labels\" --printer Tape"});
    CLI::App& saved = add("save", "Keep choices as a preset", true, save);
    addName(saved, arguments->name, "What to call it");
    arguments->settings.addTo(saved);
    arguments->handling.addTo(saved);
    saved.add_flag("--replace", arguments->replace, "Replace one of that name");
    addExamples(saved, {"labelcut presets save \"Shelf labels\" --printer Tape --set KvHalfCut=ON",
                        "labelcut presets save Badges --copies 20 --replace"});
    CLI::App& removed = add("remove", "Remove a preset", false, remove);
    addName(removed, arguments->name, "The preset");
    addExamples(removed, {"labelcut presets remove \"Shelf labels\" --printer Tape"});
    CLI::App& renamed = add("rename", "Give a preset another name", false, rename);
    addName(renamed, arguments->name, "The preset");
    addName(renamed, arguments->newName, "What to call it from now on", "NEW-NAME");
    renamed.add_flag("--replace", arguments->replace, "Replace one of the new name");
    addExamples(renamed, {"labelcut presets rename \"Shelf labels\" Shelves --printer Tape"});
}

} // namespace labelcut
