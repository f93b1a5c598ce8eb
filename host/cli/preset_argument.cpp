// The command line: choices that were kept under a name.
#include "host/cli/preset_argument.h"

#include <CLI/CLI.hpp>

#include <algorithm>

#include "host/cli/runner.h"
#include "host/presets/preset_store.h"

namespace labelcut {

void PresetArgument::addTo(CLI::App& command) {
    command.add_option("--preset", name, "Choices kept under a name; --set wins over them")
        ->type_name("NAME");
}

Result<std::optional<PresetMatch>> PresetArgument::matched(const OpenedPrinter& printer) const {
    if (name.empty())
        return std::optional<PresetMatch>();
    const PrinterIdentity identity = printer.queue()
                                         ? PrinterIdentity::forQueue(printer.queue()->name)
                                         : PrinterIdentity::forPpd(printer.ppd());
    const Result<Preset> preset = PresetStore().load(identity, QString::fromStdString(name));
    if (!preset)
        return preset.error();
    PresetMatch match = matchPreset(printer.ppd(), *preset);
    for (const QString& sentence : describe(printer.ppd(), match.missing))
        Runner::complain(sentence);
    return std::optional(std::move(match));
}

std::vector<ppd::Setting> overridden(std::vector<ppd::Setting> kept,
                                     const std::vector<ppd::Setting>& asked) {
    std::erase_if(kept, [&](const ppd::Setting& setting) {
        return std::ranges::find(asked, setting.keyword, &ppd::Setting::keyword) != asked.end();
    });
    kept.insert(kept.end(), asked.begin(), asked.end());
    return kept;
}

} // namespace labelcut
