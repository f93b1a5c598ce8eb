// Presets: the contents of one preset file.
#include "host/presets/preset_file.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <cmath>

#include "host/core/copies.h"
#include "host/settings/ppd_calls.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr char kFormat[] = "labelcut-presets";
constexpr int kVersion = 1;
/// Characters of a choice, custom values included; far beyond what a PPD can hold.
constexpr qsizetype kMaxChoiceLength = 4096;

const QString kFormatKey = QStringLiteral("format");
const QString kVersionKey = QStringLiteral("version");
const QString kPrinterKey = QStringLiteral("printer");
const QString kPresetsKey = QStringLiteral("presets");
const QString kNameKey = QStringLiteral("name");
const QString kPageSizeKey = QStringLiteral("pageSize");
const QString kCopiesKey = QStringLiteral("copies");
const QString kReversedKey = QStringLiteral("reversed");
const QString kCollatedKey = QStringLiteral("collated");
const QString kFitKey = QStringLiteral("fit");
const QString kOptionsKey = QStringLiteral("options");

std::optional<QString> problemOfOption(const QString& keyword, const QJsonValue& choice) {
    if (keyword.isEmpty() || keyword.toUtf8().size() >= ppd::kMaxName)
        return hostText("NoKeyword").arg(keyword.left(ppd::kMaxName));
    if (keyword == u"PageSize")
        return hostText("PageSizeAmongOptions");
    if (!choice.isString() || choice.toString().isEmpty() ||
        choice.toString().size() > kMaxChoiceLength)
        return hostText("ChoiceNoText").arg(keyword, QString::number(kMaxChoiceLength));
    return std::nullopt;
}

std::optional<QString> problemOfOptions(const QJsonValue& options) {
    if (!options.isObject() && !options.isUndefined())
        return hostText("OptionsNoObject");
    const QJsonObject all = options.toObject();
    for (auto option = all.begin(); option != all.end(); ++option)
        if (const auto problem = problemOfOption(option.key(), option.value()))
            return problem;
    return std::nullopt;
}

bool isCopies(const QJsonValue& copies) {
    const double number = copies.toDouble(0);
    return copies.isUndefined() ||
           (number >= 1 && number <= kMaxCopies && std::floor(number) == number);
}

bool isTruthOrAbsent(const QJsonValue& value) {
    return value.isUndefined() || value.isBool();
}

/// The rest of a sentence about how a preset handles pages, or nothing when that is good.
std::optional<QString> problemOfHandling(const QJsonObject& entry) {
    if (!isCopies(entry.value(kCopiesKey)))
        return hostText("CopiesNoNumber").arg(kMaxCopies);
    if (!isTruthOrAbsent(entry.value(kReversedKey)))
        return hostText("ReversedNoTruth");
    if (!isTruthOrAbsent(entry.value(kCollatedKey)))
        return hostText("CollatedNoTruth");
    const QJsonValue fit = entry.value(kFitKey);
    if (!fit.isUndefined() && !fitNamed(fit.toString()))
        return hostText("FitUnknown");
    return std::nullopt;
}

Handling handlingOf(const QJsonObject& entry) {
    return {entry.value(kCopiesKey).toInt(1), entry.value(kReversedKey).toBool(false),
            entry.value(kCollatedKey).toBool(true),
            fitNamed(entry.value(kFitKey).toString()).value_or(worker::Fit::Unchanged)};
}

/// Puts a value in; the default is left out.
template<typename Value>
void insert(QJsonObject& entry, const QString& key, const Value& value, const Value& absent) {
    entry.remove(key);
    if (value != absent)
        entry.insert(key, value);
}

/// The rest of a sentence about a preset, or nothing when it is good.
std::optional<QString> problemOf(const QJsonObject& entry) {
    if (!entry.value(kNameKey).isString())
        return hostText("NameNoText");
    if (presetNameProblem(entry.value(kNameKey).toString()))
        return hostText("NameUnusable");
    const QJsonValue pageSize = entry.value(kPageSizeKey);
    if (!pageSize.isUndefined() && !pageSize.isString())
        return hostText("PageSizeNoText");
    if (const auto problem = problemOfHandling(entry))
        return problem;
    return problemOfOptions(entry.value(kOptionsKey));
}

Preset presetOf(const QJsonObject& entry) {
    Preset preset{handlingOf(entry),
                  entry.value(kNameKey).toString(),
                  entry.value(kPageSizeKey).toString(),
                  {}};
    const QJsonObject options = entry.value(kOptionsKey).toObject();
    for (auto option = options.begin(); option != options.end(); ++option)
        preset.options.insert(option.key(), option.value().toString());
    return preset;
}

PresetFile::Entry entryOf(const QJsonValue& value) {
    if (!value.isObject())
        return PresetFile::Damaged{QString(), hostText("EntryNoObject")};
    const QJsonObject entry = value.toObject();
    if (const auto problem = problemOf(entry))
        return PresetFile::Damaged{entry.value(kNameKey).toString(), *problem};
    return presetOf(entry);
}

/// `entry` with a preset's values; members of other names stay.
QJsonObject filled(QJsonObject entry, const Preset& preset) {
    QJsonObject options;
    for (auto option = preset.options.begin(); option != preset.options.end(); ++option)
        options.insert(option.key(), option.value());
    entry.insert(kNameKey, preset.name);
    entry.insert(kCopiesKey, preset.copies);
    entry.insert(kOptionsKey, options);
    insert(entry, kReversedKey, preset.isReversed, false);
    insert(entry, kCollatedKey, preset.isCollated, true);
    insert(entry, kFitKey, fitWord(preset.fit), QString());
    insert(entry, kPageSizeKey, preset.pageSize, QString());
    return entry;
}

/// Removes every preset of that name, damaged ones too, but for the one at `kept`.
void removeNamed(QJsonArray& array, const QString& name, qsizetype kept) {
    for (qsizetype i = array.size() - 1; i >= 0; --i)
        if (i != kept && array.at(i).toObject().value(kNameKey).toString() == name)
            array.removeAt(i);
}

std::optional<QString> problemOfRoot(const QJsonObject& root) {
    if (root.value(kFormatKey) != QLatin1String(kFormat))
        return hostText("NoPresetFile");
    if (root.value(kVersionKey) != kVersion)
        return hostText("VersionUnknown");
    if (!root.value(kPresetsKey).isArray())
        return hostText("ListMissing");
    return std::nullopt;
}

} // namespace

PresetFile::PresetFile(const PrinterIdentity& printer) {
    mRoot.insert(kFormatKey, QLatin1String(kFormat));
    mRoot.insert(kVersionKey, kVersion);
    mRoot.insert(kPrinterKey, printer.key());
    mRoot.insert(kPresetsKey, QJsonArray());
}

std::optional<PresetFile> PresetFile::fromBytes(const QByteArray& bytes, QString* problem) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        *problem = hostText("NoJson").arg(QString::number(error.offset), error.errorString());
        return std::nullopt;
    }
    if (const auto reason = problemOfRoot(document.object())) {
        *problem = *reason;
        return std::nullopt;
    }
    PresetFile file;
    file.mRoot = document.object();
    return file;
}

QByteArray PresetFile::toBytes() const {
    return QJsonDocument(mRoot).toJson(QJsonDocument::Indented);
}

std::vector<PresetFile::Entry> PresetFile::entries() const {
    std::vector<Entry> all;
    QSet<QString> names;
    for (const QJsonValue value : mRoot.value(kPresetsKey).toArray()) {
        Entry entry = entryOf(value);
        if (const auto* preset = std::get_if<Preset>(&entry)) {
            if (names.contains(preset->name))
                entry = Damaged{preset->name, hostText("NameTwice")};
            else
                names.insert(preset->name);
        }
        all.push_back(std::move(entry));
    }
    return all;
}

std::optional<Preset> PresetFile::find(const QString& name) const {
    const qsizetype index = indexOf(name);
    if (index < 0)
        return std::nullopt;
    return presetOf(mRoot.value(kPresetsKey).toArray().at(index).toObject());
}

/// Of a preset that is not damaged; −1: there is none.
qsizetype PresetFile::indexOf(const QString& name) const {
    const std::vector<Entry> all = entries();
    const auto found = std::ranges::find_if(all, [&](const Entry& entry) {
        const auto* preset = std::get_if<Preset>(&entry);
        return preset && preset->name == name;
    });
    return found == all.end() ? -1 : found - all.begin();
}

void PresetFile::put(const Preset& preset) {
    QJsonArray array = mRoot.value(kPresetsKey).toArray();
    const qsizetype index = indexOf(preset.name);
    if (index < 0)
        array.append(filled({}, preset));
    else
        array.replace(index, filled(array.at(index).toObject(), preset));
    mRoot.insert(kPresetsKey, array);
}

bool PresetFile::rename(const QString& from, const QString& to) {
    const qsizetype index = indexOf(from);
    if (index < 0)
        return false;
    QJsonArray array = mRoot.value(kPresetsKey).toArray();
    QJsonObject entry = array.at(index).toObject();
    entry.insert(kNameKey, to);
    array.replace(index, entry);
    if (from != to)
        removeNamed(array, to, index);
    mRoot.insert(kPresetsKey, array);
    return true;
}

bool PresetFile::remove(const QString& name) {
    QJsonArray array = mRoot.value(kPresetsKey).toArray();
    const qsizetype before = array.size();
    removeNamed(array, name, -1);
    mRoot.insert(kPresetsKey, array);
    return array.size() < before;
}

} // namespace labelcut
