// Settings: the constraints of a PPD, and which of them the marked choices break.
//
// They mean what libcups makes of them; libcups itself compares every one with every name at every
// mark. Here they are read once and lie by their options, so that a mark costs no more than the
// constraints of its option, and everything else one walk over all.
#pragma once

#include <cups/ppd.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace labelcut::ppd {

struct ResolvingRules;

/// One side of a constraint.
struct RulePart {
    /// Never null.
    ppd_option_t* option = nullptr;
    /// Null: every choice but None, Off and False.
    ppd_choice_t* choice = nullptr;
    /// A label size, for which the marked size decides and not its option.
    bool isPaper = false;
    bool isInstallable = false;
};

/// A constraint: broken when all of its parts hold.
struct Rule {
    std::span<const RulePart> parts;
    /// The name of the PPD's own way out of it; empty: none.
    const char* resolver = "";
    /// Whether a part is about what is installed.
    bool isInstallable = false;
};

/// For comparing without regard to case, as libcups does: ASCII alone.
std::string folded(std::string_view text);
/// Takes the first word and the blanks around it off `text`. @return as much of it as a keyword
/// has.
std::string_view takeWord(std::string_view& text);
/// Whether a part holds for the value of its option; a null value holds for none.
/// @param choice  the part's; null: every one but None, Off and False.
bool holds(const char* choice, const char* value);
/// A custom value's choice, and every other as it is.
const char* withoutCustomValue(const char* choice);
/// Whether it is the keyword of the label size or of its twin.
bool isPaperKeyword(std::string_view keyword);

/// What is marked, as constraints see it. Borrows the file.
class MarkedValues {
public:
    explicit MarkedValues(ppd_file_t* file)
        : mFile(file) {}
    /// The marked value that decides whether the part holds; null when there is none.
    const char* of(const RulePart& part) const;
    /// The name of the marked label size; null when there is none.
    const char* paper() const;

private:
    ppd_file_t* mFile;
    /// Looked for once.
    mutable std::optional<const char*> mPaper;
};

/// Borrows the file for its own life.
class ConstraintRules {
public:
    explicit ConstraintRules(ppd_file_t* file);
    /// Rules refer to what else this object holds.
    ConstraintRules(const ConstraintRules&) = delete;
    ConstraintRules& operator=(const ConstraintRules&) = delete;

    /// In the order in which libcups goes through them.
    const std::vector<Rule>& rules() const { return mRules; }
    /// The rules that name the option, by their index, in order.
    std::span<const std::uint32_t> rulesOf(const ppd_option_t* option) const;
    /// The texts of the PPD's own ways out, by their folded names; never null.
    const std::unordered_map<std::string, const char*>& resolvers() const { return mResolvers; }
    /// A copy of all that, for searches beside the file's thread; made when it is first asked for.
    std::shared_ptr<const ResolvingRules> copy();

    /// Compares all rules with the marks, and writes into the record of every option whether it
    /// takes part in a conflict. @return how many rules are broken.
    int update();
    /// The same, when only the marks of one option have changed since the last time.
    void update(const ppd_option_t& option);

    /// By the last update: the marked choices that break each rule, if they are one or two, each
    /// set once, in the PPD's order; when no rule has so few, those of all broken rules in one set.
    std::vector<std::vector<ppd_choice_t*>> conflicts() const;
    /// How many rules were compared with the marks in this object's life.
    std::int64_t comparisons() const { return mComparisons; }

private:
    class Reader;

    void setBroken(std::uint32_t index, bool isBroken);
    bool isBroken(const Rule& rule, const MarkedValues& marks);
    std::vector<ppd_choice_t*> sidesOf(const Rule& rule) const;

    ppd_file_t* mFile;
    std::vector<RulePart> mParts;
    std::vector<Rule> mRules;
    std::unordered_map<const ppd_option_t*, std::vector<std::uint32_t>> mRulesOf;
    std::unordered_map<std::string, const char*> mResolvers;
    /// By rule, and by option how many broken rules name it.
    std::vector<bool> mBroken;
    std::unordered_map<const ppd_option_t*, int> mConflictsOf;
    int mBrokenCount = 0;
    std::shared_ptr<const ResolvingRules> mCopy;
    std::int64_t mComparisons = 0;
};

} // namespace labelcut::ppd
