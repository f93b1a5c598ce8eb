// Presets: kept in the user's configuration folder, one file a printer.
#include "host/presets/preset_store.h"

#include <QCollator>
#include <QElapsedTimer>
#include <QLocale>
#include <QThread>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>

#include "host/core/atomic_file.h"
#include "host/core/file_lock.h"
#include "host/core/file_name.h"
#include "host/core/private_folder.h"
#include "host/core/regular_file.h"
#include "host/core/user_folders.h"
#include "host/presets/preset_file.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// How many damaged files of one printer can be kept beside each other.
constexpr int kMaxSetAside = 1'000;
constexpr unsigned long kLockPause = 5; // milliseconds

Error failure(QString sentence) {
    return {ErrorKind::Other, std::move(sentence)};
}

Error cannotWrite(const QString& path, const QString& reason) {
    return failure(hostText("NotKept").arg(path, reason));
}

/// What stands in a file, or why it cannot be used.
struct Contents {
    bool exists = false;
    std::optional<PresetFile> file;
    QString damage; ///< The rest of a sentence; empty when there is none.
};

Contents contentsOf(const QString& path) {
    const FileContent content = readSmallFile(path, PresetStore::kMaxFileSize);
    Contents contents{content.isThere, std::nullopt, content.reason};
    if (content.isThere && content.reason.isEmpty())
        contents.file = PresetFile::fromBytes(content.bytes, &contents.damage);
    return contents;
}

QString sentenceFor(const PresetFile::Damaged& preset, std::size_t number, const QString& path) {
    if (preset.name.isEmpty())
        return hostText("PresetNumberUnusable").arg(QString::number(number), path, preset.reason);
    return hostText("PresetInFileUnusable").arg(preset.name, path, preset.reason);
}

/// Gives a file another name unless that is taken. @return false: errno says why not.
bool moved(const QString& from, const QString& to) {
    return renameat2(AT_FDCWD, systemName(from).constData(), AT_FDCWD, systemName(to).constData(),
                     RENAME_NOREPLACE) == 0;
}

/// Renames a file that cannot be used so that nothing writes over it. @return the new path.
Result<QString> setAside(const QString& path) {
    for (int number = 1; number <= kMaxSetAside; ++number) {
        const QString other = path + QStringLiteral(".damaged-%1").arg(number);
        if (moved(path, other))
            return other;
        if (errno != EEXIST)
            return cannotWrite(path, qt_error_string(errno));
    }
    return cannotWrite(path, hostText("TooManySetAside"));
}

Result<Done> write(const QString& path, const QByteArray& bytes) {
    if (bytes.size() > PresetStore::kMaxFileSize)
        return cannotWrite(path, hostText("WouldBeTooLarge").arg(PresetStore::kMaxFileSize));
    const std::optional<QString> reason = writePrivately(path, bytes);
    return reason ? Result<Done>(cannotWrite(path, *reason)) : Done();
}

/// @param lock  the name of the lock's file.
std::optional<Error> reasonAgainst(FileLock::Attempt attempt, const QString& path,
                                   const QString& lock) {
    switch (attempt) {
    case FileLock::Attempt::Held:
        return std::nullopt;
    case FileLock::Attempt::Busy:
        return failure(hostText("FileBusy").arg(path));
    case FileLock::Attempt::NotRegular:
        return failure(hostText("LockIsNoFile").arg(path, lock));
    case FileLock::Attempt::Forbidden:
        return cannotWrite(path, hostText("FolderRefuses"));
    case FileLock::Attempt::Impossible:
        break;
    }
    return cannotWrite(path, hostText("LockImpossible"));
}

/// Waits for the lock, in pauses that stay short, so that the unlucky one of several does not
/// starve.
FileLock::Attempt wait(FileLock& lock) {
    QElapsedTimer timer;
    timer.start();
    FileLock::Attempt attempt = lock.tryLock();
    while (attempt == FileLock::Attempt::Busy && timer.elapsed() <= PresetStore::kLockTimeout) {
        QThread::msleep(kLockPause);
        attempt = lock.tryLock();
    }
    return attempt;
}

/// Changes a file's contents. @return why it will not, or nothing.
using Change = std::function<std::optional<Error>(PresetFile&)>;

Result<PresetStore::Notes> changed(const QString& path, const PrinterIdentity& printer,
                                   const Change& change) {
    if (path.isEmpty())
        return failure(hostText("NoHome"));
    if (!makePrivateFolder(path.left(path.lastIndexOf(u'/'))))
        return cannotWrite(path, hostText("FolderImpossible"));
    const QString lockPath = path + QStringLiteral(".lock");
    FileLock lock(lockPath);
    if (const auto reason = reasonAgainst(wait(lock), path, lockPath))
        return *reason;

    Contents contents = contentsOf(path);
    PresetFile file = contents.file ? std::move(*contents.file) : PresetFile(printer);
    if (const std::optional<Error> refusal = change(file))
        return *refusal;
    if (contents.damage.isEmpty()) {
        const Result<Done> written = write(path, file.toBytes());
        return written ? Result<PresetStore::Notes>(PresetStore::Notes()) : written.error();
    }
    const Result<QString> other = setAside(path);
    if (!other)
        return other.error();
    if (const Result<Done> written = write(path, file.toBytes()); !written) {
        moved(*other, path);
        return written.error();
    }
    return PresetStore::Notes{hostText("KeptAside").arg(path, contents.damage, *other)};
}

Error noSuchPreset(const PrinterIdentity& printer, const QString& name,
                   const std::vector<Preset>& present) {
    QStringList names;
    for (const Preset& preset : present)
        names << hostText("Quoted").arg(preset.name);
    if (names.isEmpty())
        return failure(hostText("NoPresets").arg(printer.title(), name));
    return failure(hostText("NoSuchPreset")
                       .arg(printer.title(), name, names.join(hostText("SentenceSeparator"))));
}

Error nameTaken(const PrinterIdentity& printer, const QString& name) {
    return failure(hostText("PresetNameTaken").arg(printer.title(), name));
}

std::vector<Preset> presetsIn(const PresetFile& file) {
    std::vector<Preset> presets;
    for (const PresetFile::Entry& entry : file.entries())
        if (const auto* preset = std::get_if<Preset>(&entry))
            presets.push_back(*preset);
    return presets;
}

/// Why these cannot be a preset's contents: what was written must be read again.
std::optional<Error> problemOf(const PrinterIdentity& printer, const Preset& preset) {
    if (const auto problem = presetNameProblem(preset.name))
        return failure(*problem);
    PresetFile file(printer);
    file.put(preset);
    const std::vector<PresetFile::Entry> entries = file.entries();
    if (const auto* damage = std::get_if<PresetFile::Damaged>(&entries.front()))
        return failure(hostText("PresetNotKept").arg(preset.name, damage->reason));
    return std::nullopt;
}

} // namespace

PresetStore::PresetStore(QString folder)
    : mFolder(std::move(folder)) {}

QString PresetStore::standardFolder() {
    const std::optional<QString> folder = configurationFolder();
    return folder ? *folder + QStringLiteral("/labelcut/presets") : QString();
}

QString PresetStore::filePath(const PrinterIdentity& printer) const {
    return mFolder.isEmpty() ? QString() : mFolder + u'/' + printer.fileName();
}

PresetList PresetStore::list(const PrinterIdentity& printer) const {
    const QString path = filePath(printer);
    const Contents contents = contentsOf(path);
    PresetList list;
    if (!contents.damage.isEmpty())
        list.problems << hostText("PresetsUnusable").arg(path, contents.damage);
    if (!contents.file)
        return list;
    std::size_t number = 0;
    for (const PresetFile::Entry& entry : contents.file->entries()) {
        ++number;
        if (const auto* damage = std::get_if<PresetFile::Damaged>(&entry))
            list.problems << sentenceFor(*damage, number, path);
    }
    list.presets = presetsIn(*contents.file);
    QCollator collator{QLocale()};
    collator.setNumericMode(true);
    std::ranges::stable_sort(list.presets, [&](const Preset& a, const Preset& b) {
        return collator.compare(a.name, b.name) < 0;
    });
    return list;
}

Result<Preset> PresetStore::load(const PrinterIdentity& printer, const QString& name) const {
    const PresetList all = list(printer);
    const auto found = std::ranges::find(all.presets, name, &Preset::name);
    if (found != all.presets.end())
        return *found;
    Error error = noSuchPreset(printer, name, all.presets);
    for (const QString& problem : all.problems)
        error.sentence = joinedSentences({error.sentence, problem});
    return error;
}

Result<PresetStore::Notes> PresetStore::save(const PrinterIdentity& printer, const Preset& preset,
                                             Overwrite overwrite) {
    if (const std::optional<Error> problem = problemOf(printer, preset))
        return *problem;
    return changed(filePath(printer), printer, [&](PresetFile& file) -> std::optional<Error> {
        if (overwrite == Overwrite::No && file.find(preset.name))
            return nameTaken(printer, preset.name);
        file.put(preset);
        return std::nullopt;
    });
}

Result<PresetStore::Notes> PresetStore::rename(const PrinterIdentity& printer, const QString& from,
                                               const QString& to, Overwrite overwrite) {
    if (const auto problem = presetNameProblem(to))
        return failure(*problem);
    return changed(filePath(printer), printer, [&](PresetFile& file) -> std::optional<Error> {
        if (!file.find(from))
            return noSuchPreset(printer, from, presetsIn(file));
        if (from != to && overwrite == Overwrite::No && file.find(to))
            return nameTaken(printer, to);
        file.rename(from, to);
        return std::nullopt;
    });
}

Result<PresetStore::Notes> PresetStore::remove(const PrinterIdentity& printer,
                                               const QString& name) {
    return changed(filePath(printer), printer, [&](PresetFile& file) -> std::optional<Error> {
        if (file.remove(name))
            return std::nullopt;
        return noSuchPreset(printer, name, presetsIn(file));
    });
}

} // namespace labelcut
