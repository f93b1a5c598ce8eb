// Fuzzing: a preset file's bytes, read, changed, written and matched with two printers' PPDs.
#include <QSet>

#include <algorithm>

#include "host/core/copies.h"
#include "host/presets/preset_file.h"
#include "host/settings/setting_match.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

bool areEqual(const PresetFile::Entry& a, const PresetFile::Entry& b) {
    if (a.index() != b.index())
        return false;
    if (const auto* preset = std::get_if<Preset>(&a))
        return *preset == std::get<Preset>(b);
    const auto& one = std::get<PresetFile::Damaged>(a);
    const auto& other = std::get<PresetFile::Damaged>(b);
    return one.name == other.name && one.reason == other.reason;
}

bool haveEqualEntries(const PresetFile& a, const PresetFile& b) {
    return std::ranges::equal(a.entries(), b.entries(), areEqual);
}

PresetFile read(const QByteArray& bytes) {
    QString problem;
    const std::optional<PresetFile> file = PresetFile::fromBytes(bytes, &problem);
    require(file.has_value(), "what was written can be read");
    return *file;
}

/// Of names and texts that JSON carries without loss.
bool isWritable(const Preset& preset) {
    const auto isText = [](const QString& text) { return text.isValidUtf16(); };
    return isText(preset.name) && isText(preset.pageSize) &&
           std::ranges::all_of(preset.options.keys(), isText) &&
           std::ranges::all_of(preset.options.values(), isText);
}

void checkPreset(const PresetFile& file, const Preset& preset) {
    require(!presetNameProblem(preset.name), "a preset's name is one");
    require(preset.copies >= 1 && preset.copies <= kMaxCopies, "copies are in their range");
    require(file.find(preset.name) == preset, "a preset is found by its name");
    require(Preset::of(preset.name, preset.settings(), preset) == preset,
            "a preset's settings make it again");

    PresetFile same = file;
    same.put(preset);
    require(haveEqualEntries(same, file), "putting what is there changes no entry");
    if (isWritable(preset))
        require(read(same.toBytes()).find(preset.name) == preset, "a preset survives the file");
}

std::vector<ppd_choice_t*> marksOf(ppd_file_t* ppd) {
    const int count = cupsArrayCount(ppd->marked);
    std::vector<ppd_choice_t*> marks;
    marks.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        marks.push_back(static_cast<ppd_choice_t*>(cupsArrayIndex(ppd->marked, i)));
    return marks;
}

void checkMatch(ppd_file_t* ppd, const Preset& preset) {
    ppd::markDefaults(ppd);
    const std::vector<ppd_choice_t*> before = marksOf(ppd);
    const SettingMatch match = matchSettings(ppd, preset.settings());
    require(marksOf(ppd) == before, "matching changes no mark");
    require(match.applicable.size() + match.missing.size() == preset.settings().size(),
            "every choice is applied or reported");
    require(describe(ppd, match.missing).size() == static_cast<qsizetype>(match.missing.size()),
            "every missing choice has its sentence");
    for (const Setting& setting : match.applicable) {
        require(ppd::markOption(ppd, setting.keyword.toUtf8().constData(),
                                setting.choice.toUtf8().constData()),
                "what is applicable can be marked");
        require(ppd::findMarkedChoice(ppd, setting.keyword.toUtf8().constData()) != nullptr,
                "what was marked is marked");
    }
}

bool isThereTwice(const PresetFile& file, const QString& name) {
    return std::ranges::any_of(file.entries(), [&](const PresetFile::Entry& entry) {
        const auto* damaged = std::get_if<PresetFile::Damaged>(&entry);
        return damaged && damaged->name == name;
    });
}

void checkChanges(PresetFile file, const QString& from, const QString& to) {
    const bool isTwice = isThereTwice(file, from);
    const std::optional<Preset> preset = file.find(from);
    require(file.rename(from, to) == preset.has_value(), "only what is there is renamed");
    if (preset && !presetNameProblem(to)) {
        Preset renamed = *preset;
        renamed.name = to;
        require(file.find(to) == renamed, "a renamed preset is found by its new name");
        // Of two of one name the second counts as soon as the first has another.
        require(from == to || !file.find(from) || isTwice, "a renamed preset lost its old name");
    }
    file.remove(to);
    require(!file.find(to), "a removed preset is gone");
}

ppd_file_t* openSample(const char* name) {
    return ppd::openFile(QStringLiteral(LABELCUT_SAMPLES "/") + QLatin1String(name), nullptr)
        .release();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ppd_file_t* const printers[] = {openSample("tape.ppd"), openSample("roll.ppd")};
    Bytes bytes(data, size);
    const QByteArray contents = bytes.head();
    const QString newName = QString::fromUtf8(bytes.rest());

    QString problem;
    const std::optional<PresetFile> file = PresetFile::fromBytes(contents, &problem);
    if (!file) {
        require(!problem.isEmpty(), "what is no preset file says why");
        return 0;
    }
    const QByteArray written = file->toBytes();
    const PresetFile again = read(written);
    require(again.toBytes() == written, "what was read back is written the same");
    require(haveEqualEntries(again, *file), "every entry survives the file");

    QSet<QString> names;
    for (const PresetFile::Entry& entry : file->entries()) {
        if (const auto* damaged = std::get_if<PresetFile::Damaged>(&entry)) {
            require(!damaged->reason.isEmpty(), "a damaged entry says why");
            continue;
        }
        const auto& preset = std::get<Preset>(entry);
        require(!names.contains(preset.name), "a name is there once");
        names.insert(preset.name);
        checkPreset(*file, preset);
        for (ppd_file_t* printer : printers)
            checkMatch(printer, preset);
        checkChanges(*file, preset.name, newName);
    }
    return 0;
}
