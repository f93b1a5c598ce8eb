// Settings: a way out of conflicts, looked for in a bounded number of steps.
//
// The way is the one that libcups' cupsResolveConflicts() would take, which has no bound: the PPD's
// own ways out first (cupsUIResolver), else an option's default and then its other choices, one
// constraint after the other, until none is broken.
#pragma once

#include <QByteArray>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/core/call_limits.h"
#include "host/settings/resolving_data.h"
#include "host/settings/setting.h"

namespace labelcut::ppd {

/// Constraints and choices that are looked at in one search at most, which then takes some ten
/// milliseconds; real printers take some thousand.
inline constexpr std::int64_t kMaxResolvingSteps = 500'000;

/// A setting that is tried beyond those that stand.
struct Trial {
    /// Null: there is none.
    const char* choice = nullptr;
    /// kNone: one that no rule names.
    std::uint32_t option = kNone;
    bool isPaper = false;
};

/// One search, on any thread.
class ConflictResolver {
public:
    /// What shall stand: a keyword and its choice, as the PPD has them.
    struct Wanted {
        const char* keyword;
        const char* choice;
    };

    /// @param data  and wanted's texts: borrowed.
    /// @param cancel  ends the search early, without a way out; borrowed, may be null.
    ConflictResolver(const ResolvingData& data, const Wanted& wanted,
                     const CancelFlag* cancel = nullptr);

    /// All settings that the search has come to, what is wanted among them, in the order of their
    /// keywords. Nothing when there is no way, or none that was found in time. To be called once.
    std::optional<Settings> resolved();
    /// Whether the search ended at its limit.
    bool gaveUp() const { return mSteps > kMaxResolvingSteps; }
    /// How many constraints and choices were looked at.
    std::int64_t steps() const { return mSteps; }

private:
    using Option = ResolvingRules::Option;
    using Part = ResolvingRules::Part;
    using Rule = ResolvingRules::Rule;

    bool isOver() const { return gaveUp() || isCancelled(mCancel); }
    void set(const char* keyword, const char* choice);
    const char* standing(const char* keyword) const;
    const char* markedValueOf(const Part& part) const;
    const char* markedPaper() const;
    const char* nameOf(std::uint32_t choice) const;
    const char* valueOf(const Part& part, const Trial& trial) const;
    const char* currentChoice(const Part& part) const;
    bool isBroken(const Rule& rule, const Trial& trial = {});
    bool breaksAny(const Trial& trial);
    bool breaksOwn(const Trial& trial);
    std::vector<const Rule*> brokenRules();
    bool attempt(const std::vector<const Rule*>& broken);
    bool followResolver(const std::string& name);
    void followChanges(const std::vector<ResolvingRules::Change>& changes);
    void tryOption(const Part& part);
    bool isWanted(const char* keyword) const;

    const ResolvingRules& mRules;
    const ResolvingMarks& mMarks;
    Wanted mWanted;
    const CancelFlag* mCancel;
    /// By the keyword without regard to case: the keyword and the choice that stand.
    std::map<std::string, std::pair<QByteArray, QByteArray>> mStanding;
    /// The same by option, for the comparisons; null: none.
    std::vector<QByteArray> mStandingOf;
    /// Names of the PPD's ways out that were used: in this attempt, and before.
    std::set<std::string> mOfAttempt;
    std::set<std::string> mUsed;
    bool mHasChanged = false;
    std::int64_t mSteps = 0;
};

} // namespace labelcut::ppd
