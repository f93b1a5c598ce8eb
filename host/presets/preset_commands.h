// Presets: what the command line does with them, as plain lines of text.
#pragma once

#include <QString>
#include <QStringList>

#include "host/presets/preset_store.h"

namespace labelcut {

/// What a command prints.
struct PresetOutput {
    QStringList lines;    ///< For standard output.
    QStringList warnings; ///< Sentences for standard error; the command succeeded all the same.
};

namespace presetcommands {

/// One name a line.
Result<PresetOutput> list(const PresetStore& store, const PrinterIdentity& printer);
/// "KEYWORD=CHOICE" a line, page size first and "copies=N" behind them, then what
/// else is no default of "reversed=true", "collated=false" and "fit=WORD". With a PPD, what it no
/// longer has is warned of, and a password is dots. @param ppd  may be null: nothing is compared.
Result<PresetOutput> show(const PresetStore& store, const PrinterIdentity& printer,
                          const QString& name, ppd_file_t* ppd = nullptr);
Result<PresetOutput> save(PresetStore& store, const PrinterIdentity& printer, const Preset& preset,
                          Overwrite overwrite);
Result<PresetOutput> remove(PresetStore& store, const PrinterIdentity& printer,
                            const QString& name);
Result<PresetOutput> rename(PresetStore& store, const PrinterIdentity& printer, const QString& from,
                            const QString& to, Overwrite overwrite);

} // namespace presetcommands

} // namespace labelcut
