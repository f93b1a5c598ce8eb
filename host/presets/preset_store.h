// Presets: kept in the user's configuration folder, one file a printer; see docs/presets.md.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

#include "host/core/result.h"
#include "host/presets/preset.h"

namespace labelcut {

/// The presets of one printer that can be read.
struct PresetList {
    /// In the order of their names, as the user's language sorts them.
    std::vector<Preset> presets;
    /// Sentences for the user: damaged presets, a damaged file. What they name is still there.
    QStringList problems;
};

/// Whether a preset may take the place of another one of that name.
enum class Overwrite { No, Yes };

/// Reads and changes preset files. Several stores, threads and processes may do so at once: each
/// change locks the file, reads it, changes one entry and puts the new file in its place as a
/// whole. Any failure leaves the old file as it was. Nothing is kept in memory.
class PresetStore {
public:
    /// A file beyond this is not read, and no change may make one. Bytes.
    static constexpr qint64 kMaxFileSize = 1024 * 1024;
    /// How long a change waits for another process' change to end. Milliseconds.
    static constexpr int kLockTimeout = 2'000;

    /// @param folder  where the files are; need not exist. Empty: there is no place for them, so
    /// that there are no presets, and changes fail.
    explicit PresetStore(QString folder = standardFolder());
    /// "labelcut/presets" in the user's configuration folder; empty when there is none.
    static QString standardFolder();

    /// Empty when there is no place for it.
    QString filePath(const PrinterIdentity& printer) const;

    /// Never fails: a file that is missing is an empty list, one that cannot be read a problem.
    PresetList list(const PrinterIdentity& printer) const;

    /// @return the preset of exactly that name; the failure says which names there are.
    Result<Preset> load(const PrinterIdentity& printer, const QString& name) const;

    /// What a change brought along that the user should hear: a damaged file was set aside, and
    /// its new name. Usually empty.
    using Notes = QStringList;

    /// Fails for a name or contents that a preset cannot have, and, unless `overwrite` is Yes, when
    /// a preset of that name is there.
    Result<Notes> save(const PrinterIdentity& printer, const Preset& preset, Overwrite overwrite);
    /// Gives a preset another name. Fails when there is none of the old one and, unless `overwrite`
    /// is Yes, when there is one of the new.
    Result<Notes> rename(const PrinterIdentity& printer, const QString& from, const QString& to,
                         Overwrite overwrite = Overwrite::No);
    /// A damaged preset whose name can be read is removed as well. Fails when there is none.
    Result<Notes> remove(const PrinterIdentity& printer, const QString& name);

private:
    QString mFolder;
};

} // namespace labelcut
