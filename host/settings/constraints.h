// Settings: which of the marked choices exclude each other, and what would help.
#pragma once

#include <QString>
#include <QStringList>

#include <cups/ppd.h>

#include <optional>
#include <vector>

#include "host/core/call_limits.h"
#include "host/settings/ppd_calls.h"

namespace labelcut {

/// Two settings in force, rarely more, that the printer cannot follow together; or one that it
/// cannot follow at all.
using Conflict = Settings;

/// Every set of marked choices that the PPD's constraints exclude; see ppd::conflictingSettings().
/// A null PPD has none.
std::vector<Conflict> findConflicts(ppd_file_t* ppd);

/// A setting for people: its titles, and keyword and choice as they are typed, for instance
/// "Half cut: On (KvHalfCut=ON)".
QString describe(ppd_file_t* ppd, const Setting& setting);
/// A sentence that names all sides of a conflict.
QString describe(ppd_file_t* ppd, const Conflict& conflict);
/// The same of sides that are described already; at least one.
QString conflictSentence(const QStringList& sides);
/// That the search for a way out of a conflict ended at its limit.
QString gaveUpSentence();

/// A search for what to change so that `wanted` can stand. A value that refers to no PPD: any
/// thread may run it. Equal searches have the same outcome.
struct ResolutionSearch {
    ppd::ResolvingData data;
    Setting wanted;
    /// Left alone, as `wanted` itself.
    Settings kept;

    bool operator==(const ResolutionSearch&) const = default;
};

struct Resolution {
    /// The fewest settings that libcups finds, without those that are marked already. Nothing when
    /// there is no way.
    std::optional<Settings> changes;
    /// Whether the search ended at its limit.
    bool gaveUp = false;
};

/// Changes no mark. @param ppd  not null.
ResolutionSearch resolutionSearch(ppd_file_t* ppd, const Setting& wanted, const Settings& kept);
/// @param cancel  ends the search early, without a way out; may be null.
Resolution run(const ResolutionSearch& search, const CancelFlag* cancel = nullptr);

/// The same at once, for a caller who can wait. Changes no mark.
/// @param gaveUp  set to true when the search ended at its limit, otherwise left; may be null.
std::optional<Settings> proposeResolution(ppd_file_t* ppd, const Setting& wanted,
                                          const Settings& kept = {}, bool* gaveUp = nullptr);

} // namespace labelcut
