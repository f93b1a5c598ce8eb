// Settings: a way out of conflicts, looked for in a bounded number of steps.
#include "host/settings/conflict_resolver.h"

#include <algorithm>
#include <string_view>

#include "host/settings/ppd_records.h"
#include "platform/printing/ppd_lookup.h"

namespace labelcut::ppd {

namespace {

/// As in libcups.
constexpr int kMaxAttempts = 100;
/// What filters see to by themselves, in every printer.
constexpr char kCollate[] = "Collate";

} // namespace

ConflictResolver::ConflictResolver(ppd_file_t* file, const ConstraintRules& rules,
                                   const Wanted& wanted)
    : mFile(file)
    , mRules(rules)
    , mWanted(wanted)
    , mMarks(file) {
    if (!isSameName(wanted.keyword, kCollate))
        set(wanted.keyword, wanted.choice);
}

void ConflictResolver::set(const char* keyword, const char* choice) {
    auto& [name, value] = mStanding[folded(keyword)];
    if (name.isEmpty())
        name = keyword;
    value = choice;
    if (const ppd_option_t* option = findOption(mFile, keyword))
        mStandingOf[option] = value;
}

const char* ConflictResolver::standing(const char* keyword) const {
    const auto found = mStanding.find(folded(keyword));
    return found == mStanding.end() ? nullptr : found->second.second.constData();
}

const char* ConflictResolver::valueOf(const RulePart& part, const Trial& trial) const {
    if (part.isPaper && trial.keyword && isPaperKeyword(trial.keyword))
        return trial.choice;
    if (part.isPaper) {
        for (const char* keyword : {"PageSize", "PageRegion", "media"})
            if (const char* value = standing(keyword))
                return value;
        return mMarks.paper();
    }
    if (trial.keyword && isSameName(trial.keyword, part.option->keyword))
        return trial.choice;
    const auto found = mStandingOf.find(part.option);
    return found == mStandingOf.end() ? mMarks.of(part) : found->second.constData();
}

bool ConflictResolver::isBroken(const Rule& rule, const Trial& trial) {
    ++mSteps;
    return std::ranges::all_of(
        rule.parts, [&](const RulePart& part) { return holds(part, valueOf(part, trial)); });
}

bool ConflictResolver::breaksAny(const Trial& trial) {
    return std::ranges::any_of(mRules.rules(),
                               [&](const Rule& rule) { return gaveUp() || isBroken(rule, trial); });
}

/// Whether the choice breaks a constraint of its option that is not about what is installed.
bool ConflictResolver::breaksOwn(const ppd_option_t& option, const char* choice) {
    return std::ranges::any_of(mRules.rulesOf(&option), [&](std::uint32_t index) {
        const Rule& rule = mRules.rules()[index];
        return gaveUp() || (!rule.isInstallable && isBroken(rule, {option.keyword, choice}));
    });
}

std::vector<const Rule*> ConflictResolver::brokenRules() {
    std::vector<const Rule*> broken;
    for (const Rule& rule : mRules.rules())
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
        if (*rule->resolver && !followResolver(rule->resolver))
            return false;
        if (*rule->resolver)
            continue;
        for (const RulePart& part : rule->parts)
            tryOption(part);
    }
    return mHasChanged && !gaveUp();
}

/// @return false when the PPD has no such way out, or it was taken before and did not help.
bool ConflictResolver::followResolver(const char* name) {
    if (mOfAttempt.contains(folded(name)))
        return true;
    const char* text = mRules.resolver(name);
    if (!text || !mUsed.insert(folded(name)).second)
        return false;
    mOfAttempt.insert(folded(name));
    followText(text);
    return true;
}

/// @param text  "*Option Choice" or several of them. What does not help alone may do with the next.
void ConflictResolver::followText(std::string_view text) {
    while (!mHasChanged && !gaveUp()) {
        std::string keyword(takeWord(text));
        const std::string choice(takeWord(text));
        if (!keyword.starts_with('*') || keyword.size() == 1 || choice.empty())
            return;
        keyword.erase(0, 1);
        if (isWanted(keyword.c_str()))
            continue;
        mHasChanged = !breaksAny({keyword.c_str(), choice.c_str()});
        set(keyword.c_str(), choice.c_str());
    }
}

void ConflictResolver::tryOption(const RulePart& part) {
    const ppd_option_t& option = *part.option;
    if (mHasChanged || part.isInstallable || isWanted(option.keyword))
        return;
    const char* current = currentChoice(part);
    const auto tryChoice = [&](const char* choice) {
        ++mSteps;
        if (isSameName(current, choice) || gaveUp() || breaksOwn(option, choice))
            return false;
        set(option.keyword, choice);
        mHasChanged = true;
        return true;
    };
    if (tryChoice(option.defchoice))
        return;
    for (const ppd_choice_t& choice : choicesOf(option)) {
        const bool isOther =
            !isSameName(choice.choice, option.defchoice) && !isSameName(choice.choice, "Custom");
        if (gaveUp() || (isOther && tryChoice(choice.choice)))
            return;
    }
}

/// Never null.
const char* ConflictResolver::currentChoice(const RulePart& part) const {
    const char* keyword = part.option->keyword;
    const char* current = standing(keyword);
    if (!current && isPaperKeyword(keyword)) {
        current = standing("PageSize");
        current = current ? current : standing("PageRegion");
        current = current ? current : mMarks.paper();
    } else if (!current) {
        const ppd_choice_t* marked = findMarkedChoice(mFile, keyword);
        current = marked ? marked->choice : nullptr;
    }
    return current ? withoutCustomValue(current) : "";
}

} // namespace labelcut::ppd
