// The command line: choices that were kept under a name.
#include "host/cli/preset_argument.h"

#include <CLI/CLI.hpp>

#include "host/cli/runner.h"
#include "host/presets/preset_store.h"
#include "host/settings/setting_match.h"

namespace labelcut {

void PresetArgument::addTo(CLI::App& command) {
    command.add_option("--preset", name, "Choices kept under a name; --set wins over them")
        ->type_name("NAME");
}

Result<std::optional<KeptChoices>> PresetArgument::matched(const OpenedPrinter& printer) const {
    if (name.empty())
        return std::optional<KeptChoices>();
    const Result<Preset> preset =
        PresetStore().load(identityOf(printer), QString::fromStdString(name));
    if (!preset)
        return preset.error();
    SettingMatch match = matchSettings(printer.ppd(), preset->settings());
    for (const QString& sentence : describe(printer.ppd(), match.missing))
        Runner::complain(sentence);
    const Handling& handling = *preset;
    return std::optional(KeptChoices{std::move(match.applicable), handling});
}

} // namespace labelcut
