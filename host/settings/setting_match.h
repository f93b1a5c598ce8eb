// Settings: what a printer's PPD, as it is now, makes of choices that were kept.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

#include "host/settings/ppd_calls.h"

namespace labelcut {

/// A kept choice that cannot be applied.
struct MissingChoice {
    enum class Reason {
        NoSuchOption, ///< The PPD lacks the keyword.
        NoSuchChoice, ///< It has the keyword, and lacks the choice.
        BadValue,     ///< A custom value that is malformed or out of the PPD's bounds.
    };
    QString keyword;
    QString choice;
    Reason reason = Reason::NoSuchOption;
    bool operator==(const MissingChoice&) const = default;
};

struct SettingMatch {
    /// To be marked in this order, the page size first; keywords and choices spelled as the PPD
    /// spells them, custom values as they were kept.
    Settings applicable;
    /// To be told to the user: nothing is dropped without a word.
    std::vector<MissingChoice> missing;
};

/// Changes no mark. In the order given, but for a page size, which comes first.
/// @param ppd  null: everything is missing.
SettingMatch matchSettings(ppd_file_t* ppd, const Settings& settings);

/// A sentence that names keyword and choice and says why it is left out; `ppd` gives the titles.
QString describe(ppd_file_t* ppd, const MissingChoice& missing);
/// One sentence for each.
QStringList describe(ppd_file_t* ppd, const std::vector<MissingChoice>& missing);

} // namespace labelcut
