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
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/settings/constraint_rules.h"
#include "host/settings/setting.h"

namespace labelcut::ppd {

/// Constraints and choices that are looked at in one search at most. The window waits for it, so
/// that it ends before anybody notices; real printers take some thousand.
inline constexpr std::int64_t kMaxResolvingSteps = 500'000;

/// A setting that is tried beyond those that stand; null: none.
struct Trial {
    const char* keyword = nullptr;
    const char* choice = nullptr;
};

/// One search; changes no mark.
class ConflictResolver {
public:
    /// What shall stand: a keyword and its choice, as the PPD has them.
    struct Wanted {
        const char* keyword;
        const char* choice;
    };

    /// @param file  and rules, which are the file's: borrowed.
    ConflictResolver(ppd_file_t* file, const ConstraintRules& rules, const Wanted& wanted);

    /// All settings that the search has come to, what is wanted among them, in the order of their
    /// keywords. Nothing when there is no way, or none that was found in time. To be called once.
    std::optional<Settings> resolved();
    /// Whether the search ended at its limit.
    bool gaveUp() const { return mSteps > kMaxResolvingSteps; }
    /// How many constraints and choices were looked at.
    std::int64_t steps() const { return mSteps; }

private:
    void set(const char* keyword, const char* choice);
    const char* standing(const char* keyword) const;
    const char* valueOf(const RulePart& part, const Trial& trial) const;
    const char* currentChoice(const RulePart& part) const;
    bool isBroken(const Rule& rule, const Trial& trial = {});
    bool breaksAny(const Trial& trial);
    bool breaksOwn(const ppd_option_t& option, const char* choice);
    std::vector<const Rule*> brokenRules();
    bool attempt(const std::vector<const Rule*>& broken);
    bool followResolver(const char* name);
    void followText(std::string_view text);
    void tryOption(const RulePart& part);
    bool isWanted(const char* keyword) const;

    ppd_file_t* mFile;
    const ConstraintRules& mRules;
    Wanted mWanted;
    MarkedValues mMarks;
    /// By the keyword without regard to case: the keyword and the choice that stand.
    std::map<std::string, std::pair<QByteArray, QByteArray>> mStanding;
    /// The same by option, for the comparisons.
    std::unordered_map<const ppd_option_t*, QByteArray> mStandingOf;
    /// Names of the PPD's ways out that were used: in this attempt, and before.
    std::set<std::string> mOfAttempt;
    std::set<std::string> mUsed;
    bool mHasChanged = false;
    std::int64_t mSteps = 0;
};

} // namespace labelcut::ppd
