// Settings: what a printer's PPD makes of choices that were kept.
#include "host/settings/setting_match.h"

#include <algorithm>
#include <iterator>

#include "host/settings/custom_value.h"
#include "host/settings/secret_setting.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

void matchOne(ppd_file_t* ppd, const Setting& setting, SettingMatch& match) {
    using Reason = MissingChoice::Reason;
    const auto leaveOut = [&](Reason reason) {
        match.missing.push_back({setting.keyword, setting.choice, reason});
    };
    ppd_option_t* option = ppd::findOption(ppd, setting.keyword.toUtf8().constData());
    if (!option)
        return leaveOut(Reason::NoSuchOption);
    const ppd_choice_t* choice = ppd::findChoice(option, setting.choice.toUtf8().constData());
    if (!choice)
        return leaveOut(Reason::NoSuchChoice);
    const bool isCustom = isCustomValue(setting.choice);
    if (isCustom && !takesCustomValue(ppd, *option, setting.choice))
        return leaveOut(Reason::BadValue);
    match.applicable.push_back({QString::fromUtf8(option->keyword),
                                isCustom ? setting.choice : QString::fromUtf8(choice->choice)});
}

QString titleOf(ppd_file_t* ppd, const QString& keyword) {
    const ppd_option_t* option = ppd::findOption(ppd, keyword.toUtf8().constData());
    return option ? QString::fromUtf8(option->text) : keyword;
}

} // namespace

SettingMatch matchSettings(ppd_file_t* ppd, const Settings& settings) {
    SettingMatch match;
    for (const Setting& setting : settings)
        matchOne(ppd, setting, match);
    // Marking a page size changes other marks, which are to stand as they were kept.
    std::stable_partition(match.applicable.begin(), match.applicable.end(),
                          [](const Setting& setting) { return setting.keyword == kPageSize; });
    return match;
}

QString describe(ppd_file_t* ppd, const MissingChoice& missing) {
    const QString choice = shownChoice(ppd, {missing.keyword, missing.choice});
    const QString typed = QStringLiteral("%1=%2").arg(missing.keyword, choice);
    if (missing.reason == MissingChoice::Reason::NoSuchOption)
        return hostText("OptionGone").arg(missing.keyword, typed);
    const bool isBadValue = missing.reason == MissingChoice::Reason::BadValue;
    return hostText(isBadValue ? "ValueRefused" : "ChoiceGone")
        .arg(titleOf(ppd, missing.keyword), choice, typed);
}

QStringList describe(ppd_file_t* ppd, const std::vector<MissingChoice>& missing) {
    QStringList sentences;
    std::ranges::transform(missing, std::back_inserter(sentences),
                           [&](const MissingChoice& one) { return describe(ppd, one); });
    return sentences;
}

} // namespace labelcut
