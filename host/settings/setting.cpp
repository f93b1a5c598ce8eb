// Settings: the one type for a choice, from the panels' boundary to the job itself.
#include "host/settings/setting.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace labelcut {

namespace {

/// Where a keyword stands. Put in order with the first question.
class PlaceByKeyword {
public:
    explicit PlaceByKeyword(const Settings& settings)
        : mSettings(settings) {}

    /// @return the number of settings where the keyword is none of theirs.
    std::size_t of(const QString& keyword) {
        if (mPlaces.isEmpty()) {
            mPlaces.reserve(static_cast<qsizetype>(mSettings.size()));
            for (std::size_t i = 0; i < mSettings.size(); ++i)
                mPlaces.insert(mSettings[i].keyword, i);
        }
        return mPlaces.value(keyword, mSettings.size());
    }

private:
    const Settings& mSettings;
    QHash<QString, std::size_t> mPlaces;
};

} // namespace

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
    Settings different;
    PlaceByKeyword places(others);
    // Two that were read from one PPD have the same keywords in the same order.
    std::size_t place = 0;
    for (const Setting& setting : settings) {
        if (place >= others.size() || others[place].keyword != setting.keyword)
            place = places.of(setting.keyword);
        if (place == others.size() || others[place].choice != setting.choice)
            different.push_back(setting);
        place = std::min(place + 1, others.size());
    }
    return different;
}

} // namespace labelcut
