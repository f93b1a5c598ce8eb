// Settings: the one type for a choice, from the panels' boundary to the job itself.
#pragma once

#include <QString>

#include <vector>

namespace labelcut {

/// A PPD option's main keyword (without the asterisk) and one of its choice keywords;
/// "Custom.VALUE" or "{NAME=VALUE …}" for a custom value.
struct Setting {
    QString keyword;
    QString choice;
    bool operator==(const Setting&) const = default;
};

/// In an order that means something to whoever made them; each keyword at most once.
using Settings = std::vector<Setting>;

} // namespace labelcut
