// Settings: what a user asks for, checked against what the printer offers.
#include "host/settings/checked_setting.h"

#include <algorithm>

#include "host/core/failure.h"
#include "host/settings/custom_value.h"
#include "host/settings/ppd_records.h"
#include "host/settings/secret_setting.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// A list of choices in a sentence ends after so many.
constexpr int kListed = 12;
/// So many letters may differ in a keyword that was meant.
constexpr int kMistypes = 3;

QString numbered(double number) {
    return QString::number(number);
}

QStringList keywordsOf(ppd_file_t* ppd) {
    QStringList all;
    for (const ppd_group_t& group : ppd::groupsOf(ppd)) {
        for (const ppd_option_t& option : ppd::optionsOf(group))
            all << QString::fromUtf8(option.keyword);
    }
    return all;
}

/// How many letters have to be added, dropped or changed to make one text the other.
int distance(const QString& a, const QString& b) {
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    for (std::size_t j = 0; j < row.size(); ++j)
        row[j] = static_cast<int>(j);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const bool same = a[i - 1].toLower() == b[static_cast<qsizetype>(j) - 1].toLower();
            const int changed = diagonal + (same ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row.back();
}

/// Keywords like `typed`: little mistyped, or with it as a part; the closest first.
QStringList nearKeywords(ppd_file_t* ppd, const QString& typed) {
    std::vector<std::pair<int, QString>> near;
    for (const QString& keyword : keywordsOf(ppd)) {
        const int mistypes = distance(typed, keyword);
        if (mistypes <= kMistypes && mistypes < typed.size())
            near.emplace_back(mistypes, keyword);
        else if (typed.size() > kMistypes && keyword.contains(typed, Qt::CaseInsensitive))
            near.emplace_back(kMistypes + 1, keyword);
    }
    std::ranges::stable_sort(near, {}, &std::pair<int, QString>::first);
    QStringList keywords;
    for (const auto& [mistypes, keyword] : near)
        keywords << keyword;
    return keywords.mid(0, 3);
}

Error noOption(ppd_file_t* ppd, const QString& keyword) {
    const QStringList near = nearKeywords(ppd, keyword);
    if (near.isEmpty())
        return failure(hostText("OptionUnknown").arg(keyword));
    QString meant = near.front();
    for (const QString& other : near.mid(1))
        meant = hostText("OneOrOther").arg(meant, other);
    return failure(hostText("OptionMistyped").arg(keyword, meant));
}

Error noChoice(const ppd_option_t& option, const QString& choice) {
    QStringList offered;
    for (const ppd_choice_t& known : ppd::choicesOf(option))
        offered << QString::fromUtf8(known.choice);
    QString list = offered.mid(0, kListed).join(QStringLiteral(", "));
    if (offered.size() > kListed)
        list = hostText("ListCutShort").arg(list, offered.back(), QString::number(offered.size()));
    return failure(hostText("ChoiceUnknown").arg(QString::fromUtf8(option.keyword), choice, list));
}

/// What the option takes as a custom value, for people.
QString customValuesOf(ppd_file_t* ppd, const ppd_option_t& option) {
    const QLatin1String keyword(option.keyword);
    if (keyword == QLatin1String("PageSize") || keyword == QLatin1String("PageRegion"))
        return hostText("CustomPaper")
            .arg(numbered(ppd->custom_min[0]), numbered(ppd->custom_max[0]),
                 numbered(ppd->custom_min[1]), numbered(ppd->custom_max[1]));
    const auto parameters = ppd::customParameters(ppd, option.keyword);
    if (parameters.size() != 1)
        return hostText("CustomParts").arg(parameters.size());
    using Type = ppd::CustomParameter::Type;
    const ppd::CustomParameter& only = parameters.front();
    const char* key = only.type == Type::Points                                ? "CustomPoints"
                      : only.type == Type::Text || only.type == Type::Password ? "CustomText"
                                                                               : "CustomNumber";
    return hostText(key).arg(numbered(only.minimum), numbered(only.maximum));
}

} // namespace

Result<Setting> checkedSetting(ppd_file_t* ppd, const Setting& asked) {
    ppd_option_t* option = ppd::findOption(ppd, asked.keyword.toUtf8().constData());
    if (!option)
        return noOption(ppd, asked.keyword);
    Setting setting{QString::fromUtf8(option->keyword), asked.choice};
    if (isCustomValue(asked.choice) && ppd::findChoice(option, kCustom.data())) {
        const QString custom = kCustom + u'.';
        if (setting.choice.startsWith(custom, Qt::CaseInsensitive))
            setting.choice.replace(0, custom.size(), custom);
        if (takesCustomValue(ppd, *option, setting.choice))
            return setting;
        return failure(
            hostText("CustomUnusable")
                .arg(shownChoice(ppd, setting), setting.keyword, customValuesOf(ppd, *option)));
    }
    for (const ppd_choice_t& choice : ppd::choicesOf(*option)) {
        const QString known = QString::fromUtf8(choice.choice);
        if (known != kCustom && known.compare(asked.choice, Qt::CaseInsensitive) == 0) {
            setting.choice = known;
            return setting;
        }
    }
    return noChoice(*option, asked.choice);
}

Settings jobSettings(ppd_file_t* ppd, const QStringList& keywords, const Settings& asked) {
    Settings settings;
    QStringList all{QStringLiteral("PageSize")};
    all += keywords;
    for (const Setting& setting : asked)
        all << setting.keyword;
    all.removeDuplicates();
    for (const QString& keyword : all) {
        const auto isIt = [&](const Setting& setting) { return setting.keyword == keyword; };
        const auto wanted = std::ranges::find_if(asked, isIt);
        const ppd_choice_t* choice = ppd::findMarkedChoice(ppd, keyword.toUtf8().constData());
        if (wanted != asked.end())
            settings.push_back(*wanted);
        else if (choice)
            settings.push_back({keyword, QString::fromUtf8(choice->choice)});
    }
    return settings;
}

} // namespace labelcut
