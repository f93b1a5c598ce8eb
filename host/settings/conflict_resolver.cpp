// Settings: a way out of conflicts, looked for in a bounded number of steps.
#include "host/settings/conflict_resolver.h"

#include <algorithm>

#include "host/settings/constraint_rules.h"
#include "host/settings/ppd_records.h"

namespace labelcut::ppd {

namespace {

/// As in libcups.
constexpr int kMaxAttempts = 100;
/// What filters see to by themselves, in every printer.
constexpr char kCollate[] = "Collate";

} // namespace

ConflictResolver::ConflictResolver(const ResolvingData& data, const Wanted& wanted,
                                   const CancelFlag* cancel)
    : mRules(*data.rules)
    , mMarks(data.marks)
    , mWanted(wanted)
    , mCancel(cancel)
    , mStandingOf(mRules.options.size()) {
    if (!isSameName(wanted.keyword, kCollate))
        set(wanted.keyword, wanted.choice);
}

void ConflictResolver::set(const char* keyword, const char* choice) {
    auto& [name, value] = mStanding[folded(keyword)];
    if (name.isEmpty())
        name = keyword;
    value = choice;
    if (const std::uint32_t option = mRules.optionOf(keyword); option != kNone)
        mStandingOf[option] = value;
}

const char* ConflictResolver::standing(const char* keyword) const {
    const auto found = mStanding.find(folded(keyword));
    return found == mStanding.end() ? nullptr : found->second.second.constData();
}

/// Null for kNone.
const char* ConflictResolver::nameOf(std::uint32_t choice) const {
    return choice == kNone ? nullptr : mRules.choices[choice].c_str();
}

const char* ConflictResolver::markedPaper() const {
    return mMarks.paper ? mMarks.paper->c_str() : nullptr;
}

/// As MarkedValues::of().
const char* ConflictResolver::markedValueOf(const Part& part) const {
    if (part.choice == kNone)
        return nameOf(mMarks.choiceOf[part.option]);
    return mMarks.isMarked[part.choice] ? nameOf(part.choice) : nullptr;
}

const char* ConflictResolver::valueOf(const Part& part, const Trial& trial) const {
    if (part.isPaper && trial.isPaper)
        return trial.choice;
    if (part.isPaper) {
        for (const char* keyword : {"PageSize", "PageRegion", "media"})
            if (const char* value = standing(keyword))
                return value;
        return markedPaper();
    }
    if (trial.choice && trial.option == part.option)
        return trial.choice;
    const QByteArray& value = mStandingOf[part.option];
    return value.isNull() ? markedValueOf(part) : value.constData();
}

bool ConflictResolver::isBroken(const Rule& rule, const Trial& trial) {
    ++mSteps;
    return std::ranges::all_of(rule.parts, [&](const Part& part) {
        return holds(nameOf(part.choice), valueOf(part, trial));
    });
}

bool ConflictResolver::breaksAny(const Trial& trial) {
    return std::ranges::any_of(mRules.rules,
                               [&](const Rule& rule) { return isOver() || isBroken(rule, trial); });
}

/// Whether the trial breaks a constraint of its option that is not about what is installed.
bool ConflictResolver::breaksOwn(const Trial& trial) {
    return std::ranges::any_of(mRules.options[trial.option].rules, [&](std::uint32_t index) {
        const Rule& rule = mRules.rules[index];
        return isOver() || (!rule.isInstallable && isBroken(rule, trial));
    });
}

std::vector<const ResolvingRules::Rule*> ConflictResolver::brokenRules() {
    std::vector<const Rule*> broken;
    for (const Rule& rule : mRules.rules)
        if (isBroken(rule))
            broken.push_back(&rule);
    return broken;
}

/// What is to stand is not changed, nor its twin.
bool ConflictResolver::isWanted(const char* keyword) const {
    return isSameName(keyword, mWanted.keyword) ||
           (isPaperKeyword(keyword) && isPaperKeyword(mWanted.keyword));
}

std::optional<Settings> ConflictResolver::resolved() {
    for (int attempts = 0; attempts < kMaxAttempts; ++attempts) {
        const std::vector<const Rule*> broken = brokenRules();
        if (broken.empty()) {
            Settings settings;
            for (const auto& [folded, setting] : mStanding)
                if (!isSameName(setting.first.constData(), kCollate))
                    settings.push_back(
                        {QString::fromUtf8(setting.first), QString::fromUtf8(setting.second)});
            return settings;
        }
        if (!attempt(broken))
            return std::nullopt;
    }
    return std::nullopt;
}

/// One change to get rid of any of the broken constraints. @return false when there is none.
bool ConflictResolver::attempt(const std::vector<const Rule*>& broken) {
    mOfAttempt.clear();
    mHasChanged = false;
    for (const Rule* rule : broken) {
        if (!rule->resolver.empty() && !followResolver(rule->resolver))
            return false;
        if (!rule->resolver.empty())
            continue;
        for (const Part& part : rule->parts)
            tryOption(part);
    }
    return mHasChanged && !isOver();
}

/// @return false when the PPD has no such way out, or it was taken before and did not help.
bool ConflictResolver::followResolver(const std::string& name) {
    if (mOfAttempt.contains(name))
        return true;
    const auto changes = mRules.resolvers.find(name);
    if (changes == mRules.resolvers.end() || !mUsed.insert(name).second)
        return false;
    mOfAttempt.insert(name);
    followChanges(changes->second);
    return true;
}

/// What does not help alone may do with the next.
void ConflictResolver::followChanges(const std::vector<ResolvingRules::Change>& changes) {
    for (const auto& [keyword, choice] : changes) {
        if (mHasChanged || isOver())
            return;
        if (isWanted(keyword.c_str()))
            continue;
        mHasChanged =
            !breaksAny({choice.c_str(), mRules.optionOf(keyword), isPaperKeyword(keyword)});
        set(keyword.c_str(), choice.c_str());
    }
}

void ConflictResolver::tryOption(const Part& part) {
    const Option& option = mRules.options[part.option];
    if (mHasChanged || part.isInstallable || isWanted(option.keyword.c_str()))
        return;
    const char* current = currentChoice(part);
    const bool isPaper = isPaperKeyword(option.keyword);
    const auto tryChoice = [&](const std::string& choice) {
        ++mSteps;
        if (isSameName(current, choice) || isOver() ||
            breaksOwn({choice.c_str(), part.option, isPaper}))
            return false;
        set(option.keyword.c_str(), choice.c_str());
        mHasChanged = true;
        return true;
    };
    if (tryChoice(option.defaultChoice))
        return;
    for (std::uint32_t i = 0; i < option.choiceCount; ++i) {
        const std::string& choice = mRules.choices[option.firstChoice + i];
        const bool isOther =
            !isSameName(choice, option.defaultChoice) && !isSameName(choice, "Custom");
        if (isOver() || (isOther && tryChoice(choice)))
            return;
    }
}

/// Never null.
const char* ConflictResolver::currentChoice(const Part& part) const {
    const char* keyword = mRules.options[part.option].keyword.c_str();
    const char* current = standing(keyword);
    if (!current && isPaperKeyword(keyword)) {
        current = standing("PageSize");
        current = current ? current : standing("PageRegion");
        current = current ? current : markedPaper();
    } else if (!current) {
        current = nameOf(mMarks.choiceOf[part.option]);
    }
    return current ? withoutCustomValue(current) : "";
}

} // namespace labelcut::ppd
