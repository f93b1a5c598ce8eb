// Settings: what a search for a way out of conflicts reads, copied from the PPD.
#include "host/settings/resolving_data.h"

#include "host/settings/constraint_rules.h"
#include "host/settings/ppd_records.h"
#include "platform/printing/ppd_lookup.h"

namespace labelcut::ppd {

ResolvingRules::ResolvingRules(ppd_file_t* file, const ConstraintRules& source) {
    rules.reserve(source.rules().size());
    for (const ppd::Rule& rule : source.rules()) {
        Rule& copy = rules.emplace_back();
        copy.resolver = folded(rule.resolver);
        copy.isInstallable = rule.isInstallable;
        for (const RulePart& part : rule.parts) {
            const std::uint32_t option = add(*part.option, source);
            const std::uint32_t choice =
                part.choice ? options[option].firstChoice +
                                  static_cast<std::uint32_t>(part.choice - part.option->choices)
                            : kNone;
            copy.parts.push_back({option, choice, part.isPaper, part.isInstallable});
        }
    }
    for (const auto& [name, text] : source.resolvers())
        resolvers.emplace(name, changesOf(file, text, source));
}

std::uint32_t ResolvingRules::optionOf(std::string_view keyword) const {
    const auto found = mOptionOf.find(folded(keyword));
    return found == mOptionOf.end() ? kNone : found->second;
}

/// @return its index; an option that is there already keeps its own.
std::uint32_t ResolvingRules::add(const ppd_option_t& option, const ConstraintRules& source) {
    const auto [entry, isNew] =
        mOptionOf.try_emplace(folded(option.keyword), static_cast<std::uint32_t>(options.size()));
    if (!isNew)
        return entry->second;
    const auto named = source.rulesOf(&option);
    options.push_back({option.keyword,
                       option.defchoice,
                       static_cast<std::uint32_t>(choices.size()),
                       static_cast<std::uint32_t>(option.num_choices),
                       {named.begin(), named.end()}});
    for (const ppd_choice_t& choice : choicesOf(option))
        choices.emplace_back(choice.choice);
    return entry->second;
}

/// @param text  "*Option Choice" or several of them; it is read as far as it is of that form.
std::vector<ResolvingRules::Change>
ResolvingRules::changesOf(ppd_file_t* file, std::string_view text, const ConstraintRules& source) {
    std::vector<Change> changes;
    for (;;) {
        std::string_view keyword = takeWord(text);
        const std::string_view choice = takeWord(text);
        if (!keyword.starts_with('*') || keyword.size() == 1 || choice.empty())
            return changes;
        keyword.remove_prefix(1);
        changes.push_back({std::string(keyword), std::string(choice)});
        if (const ppd_option_t* option = findOption(file, changes.back().keyword.c_str()))
            add(*option, source);
    }
}

ResolvingMarks::ResolvingMarks(ppd_file_t* file, const ResolvingRules& rules)
    : choiceOf(rules.options.size(), kNone)
    , isMarked(rules.choices.size()) {
    for (std::uint32_t i = 0; i < rules.options.size(); ++i) {
        const char* keyword = rules.options[i].keyword.c_str();
        const ppd_choice_t* marked = findMarkedChoice(file, keyword);
        std::uint32_t index = rules.options[i].firstChoice;
        for (const ppd_choice_t& choice : choicesOf(*findOption(file, keyword))) {
            isMarked[index] = choice.marked != 0;
            if (&choice == marked)
                choiceOf[i] = index;
            ++index;
        }
    }
    if (const char* name = MarkedValues(file).paper())
        paper = name;
}

bool ResolvingData::isMarked(const Setting& setting) const {
    const std::uint32_t option = rules->optionOf(setting.keyword.toStdString());
    const std::uint32_t choice = option == kNone ? kNone : marks.choiceOf[option];
    return choice != kNone && setting.choice == QString::fromStdString(rules->choices[choice]);
}

} // namespace labelcut::ppd
