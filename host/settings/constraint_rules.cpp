// Settings: the constraints of a PPD, and which of them the marked choices break.
#include "host/settings/constraint_rules.h"

#include <QByteArray>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "host/settings/ppd_records.h"
#include "host/settings/resolving_data.h"
#include "platform/printing/ppd_lookup.h"

namespace labelcut::ppd {

namespace {

constexpr std::string_view kWordBreaks = " \t\n\v\f\r";
constexpr std::string_view kCustomPrefix = "Custom";

std::span<const ppd_const_t> oldConstraintsOf(const ppd_file_t& file) {
    return {file.consts, static_cast<std::size_t>(file.num_consts)};
}

std::span<ppd_attr_t* const> statementsOf(const ppd_file_t& file) {
    return {file.attrs, static_cast<std::size_t>(file.num_attrs)};
}

/// PPDs say each constraint twice, the second time with its sides changed over.
bool isOtherWayRound(const ppd_const_t& one, const ppd_const_t& other) {
    return isSameName(one.option1, other.option2) && isSameName(one.choice1, other.choice2) &&
           isSameName(one.option2, other.option1) && isSameName(one.choice2, other.choice1);
}

/// Where a choice stands in the PPD.
auto placeOf(const ppd_choice_t* choice) {
    return std::tuple(choice->option, choice);
}

/// Each once, in the PPD's order.
void sortOnce(std::vector<ppd_choice_t*>& choices) {
    std::ranges::sort(choices, {}, placeOf);
    choices.erase(std::unique(choices.begin(), choices.end()), choices.end());
}

void sortOnce(std::vector<std::vector<ppd_choice_t*>>& conflicts) {
    std::ranges::sort(conflicts, [](const auto& one, const auto& other) {
        return std::ranges::lexicographical_compare(one, other, {}, placeOf, placeOf);
    });
    conflicts.erase(std::unique(conflicts.begin(), conflicts.end()), conflicts.end());
}

} // namespace

std::string folded(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return result;
}

std::string_view takeWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kWordBreaks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kWordBreaks));
    text.remove_prefix(word.size());
    text.remove_prefix(std::min(text.find_first_not_of(kWordBreaks), text.size()));
    return word.substr(0, kMaxName - 1);
}

bool isPaperKeyword(std::string_view keyword) {
    return isSameName(keyword, "PageSize") || isSameName(keyword, "PageRegion");
}

const char* withoutCustomValue(const char* choice) {
    return qstrnicmp(choice, "Custom.", 7) == 0 ? kCustomPrefix.data() : choice;
}

bool holds(const char* choice, const char* value) {
    if (!value)
        return false;
    if (choice)
        return isSameName(withoutCustomValue(value), choice);
    return !isSameName(value, "None") && !isSameName(value, "Off") && !isSameName(value, "False");
}

const char* MarkedValues::paper() const {
    if (!mPaper) {
        const std::span sizes(mFile->sizes, static_cast<std::size_t>(mFile->num_sizes));
        const auto marked =
            std::ranges::find_if(sizes, [](const ppd_size_t& size) { return size.marked != 0; });
        mPaper = marked == sizes.end() ? nullptr : marked->name;
    }
    return *mPaper;
}

const char* MarkedValues::of(const RulePart& part) const {
    if (part.isPaper)
        return paper();
    if (part.choice)
        return part.choice->marked ? part.choice->choice : nullptr;
    const ppd_choice_t* marked = findMarkedChoice(mFile, part.option->keyword);
    return marked ? marked->choice : nullptr;
}

/// Reads the rules of a PPD in both of their forms; names are looked up in tables.
class ConstraintRules::Reader {
public:
    Reader(ppd_file_t& file, ConstraintRules& rules)
        : mFile(file)
        , mRules(rules) {
        const auto groups = groupsOf(&file);
        const auto installable = std::ranges::find_if(groups, [](const ppd_group_t& group) {
            return isSameName(group.name, "InstallableOptions");
        });
        if (installable == groups.end())
            return;
        for (const ppd_option_t& option : optionsOf(*installable))
            mInstallable.insert(folded(option.keyword));
    }

    void read() {
        const auto old = oldConstraintsOf(mFile);
        for (std::size_t i = 0; i < old.size(); ++i)
            if (i + 1 == old.size() || !isOtherWayRound(old[i], old[i + 1]))
                add({partOf(old[i].option1, old[i].choice1),
                     partOf(old[i].option2, old[i].choice2)},
                    "");
        for (const ppd_attr_t* statement : statementsOf(mFile)) {
            if (isSameName(statement->name, "cupsUIConstraints") && statement->value)
                add(partsOf(statement->value), statement->spec);
            else if (isSameName(statement->name, "cupsUIResolver") && statement->value)
                mRules.mResolvers.try_emplace(folded(statement->spec), statement->value);
        }
        link();
    }

private:
    using Parts = std::vector<std::optional<RulePart>>;

    /// @return nothing when the PPD lacks the option or the choice.
    std::optional<RulePart> partOf(std::string_view keyword, std::string_view choice) {
        const bool isCustom = isSameName(keyword.substr(0, kCustomPrefix.size()), kCustomPrefix) &&
                              isSameName(choice, "True");
        if (isCustom) {
            keyword.remove_prefix(kCustomPrefix.size());
            choice = kCustomPrefix;
        }
        RulePart part;
        part.option = findOption(&mFile, std::string(keyword).c_str());
        if (!part.option)
            return std::nullopt;
        part.choice = choiceOf(*part.option, choice);
        if (!part.choice && !choice.empty())
            return std::nullopt;
        part.isPaper = part.choice && isPaperKeyword(part.option->keyword);
        part.isInstallable = mInstallable.contains(folded(keyword));
        return part;
    }

    /// @param text  "*Option Choice", "*Option" or several of them.
    Parts partsOf(std::string_view text) {
        Parts parts;
        for (auto star = text.find('*'); star != std::string_view::npos; star = text.find('*')) {
            text.remove_prefix(star + 1);
            const std::string_view keyword = takeWord(text);
            parts.push_back(
                partOf(keyword, text.starts_with('*') ? std::string_view() : takeWord(text)));
        }
        return parts;
    }

    ppd_choice_t* choiceOf(ppd_option_t& option, std::string_view choice) {
        auto& choices = mChoices[&option];
        if (choices.empty())
            for (ppd_choice_t& known : choicesOf(option))
                choices.try_emplace(folded(known.choice), &known);
        const bool isValue = choice.starts_with('{') || isSameName(choice.substr(0, 7), "Custom.");
        const auto found = choices.find(folded(isValue ? kCustomPrefix : choice));
        return found == choices.end() ? nullptr : found->second;
    }

    void add(const Parts& parts, const char* resolver) {
        const bool isKnown =
            std::ranges::all_of(parts, [](const auto& part) { return part.has_value(); });
        if (parts.empty() || !isKnown)
            return;
        Rule rule;
        rule.resolver = resolver;
        for (const std::optional<RulePart>& part : parts) {
            rule.isInstallable = rule.isInstallable || part->isInstallable;
            mRules.mParts.push_back(*part);
        }
        mRules.mRules.push_back(rule);
        mSizes.push_back(parts.size());
    }

    /// Once the parts stay where they are.
    void link() {
        std::size_t begin = 0;
        for (std::uint32_t i = 0; i < mRules.mRules.size(); ++i) {
            Rule& rule = mRules.mRules[i];
            rule.parts = std::span(mRules.mParts).subspan(begin, mSizes[i]);
            begin += mSizes[i];
            for (const RulePart& part : rule.parts) {
                auto& indices = mRules.mRulesOf[part.option];
                if (indices.empty() || indices.back() != i)
                    indices.push_back(i);
            }
        }
    }

    ppd_file_t& mFile;
    ConstraintRules& mRules;
    std::unordered_set<std::string> mInstallable;
    std::unordered_map<const ppd_option_t*, std::unordered_map<std::string, ppd_choice_t*>>
        mChoices;
    std::vector<std::size_t> mSizes;
};

ConstraintRules::ConstraintRules(ppd_file_t* file)
    : mFile(file) {
    Reader(*file, *this).read();
    mBroken.resize(mRules.size());
}

std::span<const std::uint32_t> ConstraintRules::rulesOf(const ppd_option_t* option) const {
    const auto found = mRulesOf.find(option);
    return found == mRulesOf.end() ? std::span<const std::uint32_t>() : found->second;
}

std::shared_ptr<const ResolvingRules> ConstraintRules::copy() {
    if (!mCopy)
        mCopy = std::make_shared<const ResolvingRules>(mFile, *this);
    return mCopy;
}

bool ConstraintRules::isBroken(const Rule& rule, const MarkedValues& marks) {
    ++mComparisons;
    return std::ranges::all_of(rule.parts, [&](const RulePart& part) {
        const char* choice = part.choice ? part.choice->choice : nullptr;
        return holds(choice, marks.of(part));
    });
}

void ConstraintRules::setBroken(std::uint32_t index, bool isBroken) {
    if (mBroken[index] == isBroken)
        return;
    mBroken[index] = isBroken;
    mBrokenCount += isBroken ? 1 : -1;
    for (const RulePart& part : mRules[index].parts) {
        int& count = mConflictsOf[part.option];
        count += isBroken ? 1 : -1;
        part.option->conflicted = count > 0 ? 1 : 0;
    }
}

int ConstraintRules::update() {
    // libcups clears what the records say whenever it marks.
    for (const ppd_group_t& group : groupsOf(mFile))
        for (ppd_option_t& option : optionsOf(group))
            option.conflicted = 0;
    mBroken.assign(mRules.size(), false);
    mConflictsOf.clear();
    mBrokenCount = 0;
    const MarkedValues marks(mFile);
    for (std::uint32_t i = 0; i < mRules.size(); ++i)
        setBroken(i, isBroken(mRules[i], marks));
    return mBrokenCount;
}

void ConstraintRules::update(const ppd_option_t& option) {
    const MarkedValues marks(mFile);
    for (const std::uint32_t i : rulesOf(&option))
        setBroken(i, isBroken(mRules[i], marks));
}

std::vector<ppd_choice_t*> ConstraintRules::sidesOf(const Rule& rule) const {
    std::vector<ppd_choice_t*> sides;
    for (const RulePart& part : rule.parts) {
        ppd_choice_t* side = part.choice;
        if (part.isPaper) {
            side = findMarkedChoice(mFile, "PageSize");
            side = side ? side : findMarkedChoice(mFile, "PageRegion");
        } else if (!side) {
            side = findMarkedChoice(mFile, part.option->keyword);
        }
        // A size's own mark stays when its choice is marked no longer.
        if (side)
            sides.push_back(side);
    }
    sortOnce(sides);
    return sides;
}

std::vector<std::vector<ppd_choice_t*>> ConstraintRules::conflicts() const {
    std::vector<std::vector<ppd_choice_t*>> all;
    std::vector<ppd_choice_t*> together;
    for (std::uint32_t i = 0; i < mRules.size(); ++i) {
        if (!mBroken[i])
            continue;
        std::vector<ppd_choice_t*> sides = sidesOf(mRules[i]);
        together.insert(together.end(), sides.begin(), sides.end());
        if (sides.size() == 1 || sides.size() == 2)
            all.push_back(std::move(sides));
    }
    sortOnce(all);
    sortOnce(together);
    if (all.empty() && !together.empty())
        all.push_back(std::move(together));
    return all;
}

} // namespace labelcut::ppd
