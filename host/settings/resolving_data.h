// Settings: what a search for a way out of conflicts reads, copied from the PPD.
//
// libcups' look-ups change the file that they look into, so that a file belongs to one thread.
// These copies refer to no file: any thread may read them, and they may outlive it.
#pragma once

#include <cups/ppd.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/settings/setting.h"

namespace labelcut::ppd {

class ConstraintRules;

/// What stands for an index where there is none.
inline constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

/// The constraints of a PPD and its ways out of them, with the options that they name. Options,
/// choices and rules are known by their indices in these lists.
struct ResolvingRules {
    struct Option {
        std::string keyword;
        std::string defaultChoice;
        /// Its choices, in the PPD's order: so many from this one on.
        std::uint32_t firstChoice = 0;
        std::uint32_t choiceCount = 0;
        /// The rules that name it, in order.
        std::vector<std::uint32_t> rules;
    };
    /// As RulePart.
    struct Part {
        std::uint32_t option = kNone;
        /// None: every choice but None, Off and False.
        std::uint32_t choice = kNone;
        bool isPaper = false;
        bool isInstallable = false;
    };
    /// As Rule.
    struct Rule {
        std::vector<Part> parts;
        /// Folded, see folded(); empty: none.
        std::string resolver;
        bool isInstallable = false;
    };
    /// One setting of the PPD's own way out.
    struct Change {
        std::string keyword;
        std::string choice;
    };

    /// @param file  and source, its rules: borrowed for the call.
    ResolvingRules(ppd_file_t* file, const ConstraintRules& source);
    /// The option of that keyword, whatever its case; kNone when no rule and no way out names it.
    std::uint32_t optionOf(std::string_view keyword) const;

    std::vector<Option> options;
    std::vector<std::string> choices;
    /// In the order of ConstraintRules.
    std::vector<Rule> rules;
    /// The PPD's own ways out, by their folded names.
    std::unordered_map<std::string, std::vector<Change>> resolvers;

private:
    std::uint32_t add(const ppd_option_t& option, const ConstraintRules& source);
    std::vector<Change> changesOf(ppd_file_t* file, std::string_view text,
                                  const ConstraintRules& source);

    /// By the folded keyword.
    std::unordered_map<std::string, std::uint32_t> mOptionOf;
};

/// What is marked for the options of such rules.
struct ResolvingMarks {
    /// @param file  the one that the rules were copied from; borrowed for the call.
    ResolvingMarks(ppd_file_t* file, const ResolvingRules& rules);
    bool operator==(const ResolvingMarks&) const = default;

    /// By option: its marked choice, or kNone.
    std::vector<std::uint32_t> choiceOf;
    /// By choice: whether it is marked. An option may have several such choices.
    std::vector<bool> isMarked;
    /// The name of the marked label size.
    std::optional<std::string> paper;
};

/// All that one search reads. Equal when it is of the same opened PPD and the same marks.
struct ResolvingData {
    std::shared_ptr<const ResolvingRules> rules;
    ResolvingMarks marks;

    bool operator==(const ResolvingData&) const = default;
    /// Whether the setting is what is marked, letter for letter.
    bool isMarked(const Setting& setting) const;
};

} // namespace labelcut::ppd
