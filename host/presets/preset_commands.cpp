// Presets: what the command line does with them.
#include "host/presets/preset_commands.h"

#include "host/settings/secret_setting.h"
#include "host/settings/setting_match.h"
#include "host/texts/host_text.h"

namespace labelcut::presetcommands {

namespace {

PresetOutput confirmed(const PresetStore::Notes& notes, const QString& line) {
    return {{line}, notes};
}

Result<PresetOutput> outcome(const Result<PresetStore::Notes>& change, const QString& line) {
    return change ? Result<PresetOutput>(confirmed(*change, line)) : change.error();
}

} // namespace

Result<PresetOutput> list(const PresetStore& store, const PrinterIdentity& printer) {
    const PresetList all = store.list(printer);
    PresetOutput output;
    for (const Preset& preset : all.presets)
        output.lines << preset.name;
    output.warnings = all.problems;
    return output;
}

Result<PresetOutput> show(const PresetStore& store, const PrinterIdentity& printer,
                          const QString& name, ppd_file_t* ppd) {
    const Result<Preset> preset = store.load(printer, name);
    if (!preset)
        return preset.error();
    PresetOutput output;
    for (const Setting& setting : preset->settings())
        output.lines << setting.keyword + u'=' + shownChoice(ppd, setting);
    output.lines << QStringLiteral("copies=%1").arg(preset->copies);
    if (preset->isReversed)
        output.lines << QStringLiteral("reversed=true");
    if (!preset->isCollated)
        output.lines << QStringLiteral("collated=false");
    if (preset->fit != worker::Fit::Unchanged)
        output.lines << QStringLiteral("fit=") + fitWord(preset->fit);
    if (ppd)
        output.warnings = describe(ppd, matchSettings(ppd, preset->settings()).missing);
    return output;
}

Result<PresetOutput> save(PresetStore& store, const PrinterIdentity& printer, const Preset& preset,
                          Overwrite overwrite) {
    return outcome(store.save(printer, preset, overwrite),
                   hostText("PresetSaved").arg(preset.name, printer.title()));
}

Result<PresetOutput> remove(PresetStore& store, const PrinterIdentity& printer,
                            const QString& name) {
    return outcome(store.remove(printer, name),
                   hostText("PresetRemovedFrom").arg(name, printer.title()));
}

Result<PresetOutput> rename(PresetStore& store, const PrinterIdentity& printer, const QString& from,
                            const QString& to, Overwrite overwrite) {
    return outcome(store.rename(printer, from, to, overwrite),
                   hostText("PresetRenamed").arg(from, printer.title(), to));
}

} // namespace labelcut::presetcommands
