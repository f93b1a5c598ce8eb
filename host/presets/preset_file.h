// Presets: the contents of one preset file.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <variant>
#include <vector>

#include "host/presets/preset.h"

namespace labelcut {

/// What a preset file holds. Members and presets that this program does not understand stay in it
/// through every change.
class PresetFile {
public:
    /// A preset that cannot be used, and why; the rest of a sentence, such as "its copies are …".
    struct Damaged {
        QString name; ///< Empty when that cannot be read either.
        QString reason;
    };
    using Entry = std::variant<Preset, Damaged>;

    /// An empty one. @param printer  whose presets they are.
    explicit PresetFile(const PrinterIdentity& printer);
    /// @param bytes  any. @param problem  receives why they are no preset file, as the rest of a
    ///               sentence; must not be null.
    /// @return nothing when they are none.
    static std::optional<PresetFile> fromBytes(const QByteArray& bytes, QString* problem);
    QByteArray toBytes() const;

    /// In the file's order. Of two of one name the first counts, the second is damaged.
    std::vector<Entry> entries() const;
    std::optional<Preset> find(const QString& name) const;

    /// Puts a preset in the place of the one of its name, or behind the others.
    void put(const Preset& preset);
    /// Gives a preset another name; those that have it go, damaged ones too. @return false when
    /// there is none.
    bool rename(const QString& from, const QString& to);
    /// Removes the preset of that name, and damaged ones of it. @return false when there is none.
    bool remove(const QString& name);

private:
    PresetFile() = default;
    qsizetype indexOf(const QString& name) const;

    QJsonObject mRoot;
};

} // namespace labelcut
