// Settings: the one type for a choice, from the panels' boundary to the job itself.
#include "host/settings/setting.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace labelcut {

std::optional<QString> choiceFor(const Settings& settings, const QString& keyword) {
    const auto found = std::ranges::find(settings, keyword, &Setting::keyword);
    return found == settings.end() ? std::nullopt : std::optional(found->choice);
}

QStringList keywordsOf(const Settings& settings) {
    QStringList keywords;
    for (const Setting& setting : settings)
        keywords.append(setting.keyword);
    return keywords;
}

Settings overridden(Settings kept, const Settings& asked) {
    const QStringList keywords = keywordsOf(asked);
    const QSet<QString> overriding(keywords.begin(), keywords.end());
    std::erase_if(kept,
                  [&](const Setting& setting) { return overriding.contains(setting.keyword); });
    kept.insert(kept.end(), asked.begin(), asked.end());
    return kept;
}

Settings differing(const Settings& settings, const Settings& others) {
    QHash<QString, QString> known;
    known.reserve(static_cast<qsizetype>(others.size()));
    for (const Setting& setting : others)
        known.insert(setting.keyword, setting.choice);
    Settings different;
    for (const Setting& setting : settings) {
        const auto other = known.constFind(setting.keyword);
        if (other == known.cend() || *other != setting.choice)
            different.push_back(setting);
    }
    return different;
}

} // namespace labelcut
