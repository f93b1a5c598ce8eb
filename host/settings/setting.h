// Settings: the one type for a choice, from the panels' boundary to the job itself.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace labelcut {

/// The PPD main keyword of the label size.
inline constexpr QLatin1String kPageSize("PageSize");
/// Its twin in every PPD, for printers with several trays; the host marks the label size alone.
inline constexpr QLatin1String kPageRegion("PageRegion");

/// A PPD option's main keyword (without the asterisk) and one of its choice keywords; for a value
/// of the user's own "Custom.VALUE", or "{NAME=VALUE …}" for several values.
struct Setting {
    QString keyword;
    QString choice;
    bool operator==(const Setting&) const = default;
};

/// In an order that means something to whoever made them; each keyword at most once.
using Settings = std::vector<Setting>;

/// What `settings` say for the keyword, letter for letter; nothing when they say nothing.
std::optional<QString> choiceFor(const Settings& settings, const QString& keyword);

/// The keywords, in order.
QStringList keywordsOf(const Settings& settings);

/// `kept` without the keywords of `asked`, then all of `asked`.
Settings overridden(Settings kept, const Settings& asked);

/// Those of `settings` that `others` have with another choice, or not at all. Takes time in
/// proportion to the number of both.
Settings differing(const Settings& settings, const Settings& others);

} // namespace labelcut
