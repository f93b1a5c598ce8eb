// The job: what a user asks for, checked against what the printer offers.
#include "host/job/settings.h"

#include <QRegularExpression>

#include <algorithm>
#include <span>

#include "host/job/failure.h"
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

std::span<ppd_choice_t> choicesOf(const ppd_option_t& option) {
    return {option.choices, static_cast<std::size_t>(option.num_choices)};
}

void collectOptions(std::span<ppd_group_t> groups, std::vector<const ppd_option_t*>& all) {
    for (ppd_group_t& group : groups) {
        for (const ppd_option_t& option :
             std::span(group.options, static_cast<std::size_t>(group.num_options)))
            all.push_back(&option);
        collectOptions(std::span(group.subgroups, static_cast<std::size_t>(group.num_subgroups)),
                       all);
    }
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
    std::vector<const ppd_option_t*> options;
    collectOptions(std::span(ppd->groups, static_cast<std::size_t>(ppd->num_groups)), options);
    std::vector<std::pair<int, QString>> near;
    for (const ppd_option_t* option : options) {
        const QString keyword = QString::fromUtf8(option->keyword);
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
    for (const ppd_choice_t& known : choicesOf(option))
        offered << QString::fromUtf8(known.choice);
    QString list = offered.mid(0, kListed).join(QStringLiteral(", "));
    if (offered.size() > kListed)
        list = hostText("ListCutShort").arg(list, offered.back(), QString::number(offered.size()));
    return failure(hostText("ChoiceUnknown").arg(QString::fromUtf8(option.keyword), choice, list));
}

/// Points in one of the units that custom values are written in; 0 for none of them.
double unitInPoints(const QString& unit) {
    if (unit.isEmpty() || unit == u"pt")
        return 1;
    if (unit == u"in")
        return 72;
    if (unit == u"ft")
        return 72 * 12;
    if (unit == u"mm")
        return 72 / 25.4;
    if (unit == u"cm")
        return 72 / 2.54;
    return unit == u"m" ? 72 / 0.0254 : 0;
}

Error badCustom(const QString& keyword, const QString& choice, const QString& range) {
    return failure(hostText("CustomUnusable").arg(choice, keyword, range));
}

/// Rounding of written measures. Points.
constexpr double kSlack = 0.5;

bool isWithin(double value, double low, double high) {
    return value >= low - kSlack && value <= high + kSlack;
}

std::optional<Error> reasonAgainstPaper(const ppd_file_t& ppd, const ppd::Setting& asked) {
    static const QRegularExpression form(
        QStringLiteral("^Custom\\.(\\d+(?:\\.\\d+)?)x(\\d+(?:\\.\\d+)?)([a-z]*)$"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(asked.choice);
    const double unit = match.hasMatch() ? unitInPoints(match.captured(3).toLower()) : 0;
    if (unit > 0 &&
        isWithin(match.captured(1).toDouble() * unit, ppd.custom_min[0], ppd.custom_max[0]) &&
        isWithin(match.captured(2).toDouble() * unit, ppd.custom_min[1], ppd.custom_max[1]))
        return std::nullopt;
    return badCustom(asked.keyword, asked.choice,
                     hostText("CustomPaper")
                         .arg(numbered(ppd.custom_min[0]), numbered(ppd.custom_max[0]),
                              numbered(ppd.custom_min[1]), numbered(ppd.custom_max[1])));
}

std::optional<Error> reasonAgainstNumber(const ppd::CustomParameter& parameter,
                                         const ppd::Setting& asked) {
    static const QRegularExpression form(
        QStringLiteral("^Custom\\.([-+]?\\d+(?:\\.\\d+)?)([a-z]*)$"),
        QRegularExpression::CaseInsensitiveOption);
    const bool isMeasure = parameter.type == ppd::CustomParameter::Type::Points;
    const auto match = form.match(asked.choice);
    const double unit =
        isMeasure || match.captured(2).isEmpty() ? unitInPoints(match.captured(2).toLower()) : 0;
    const double value = match.captured(1).toDouble() * unit;
    if (match.hasMatch() && unit > 0 && value >= parameter.minimum && value <= parameter.maximum)
        return std::nullopt;
    return badCustom(asked.keyword, asked.choice,
                     hostText(isMeasure ? "CustomPoints" : "CustomNumber")
                         .arg(numbered(parameter.minimum), numbered(parameter.maximum)));
}

std::optional<Error> reasonAgainstText(const ppd::CustomParameter& parameter,
                                       const ppd::Setting& asked) {
    const auto length = static_cast<double>(asked.choice.size() - qsizetype(sizeof("Custom.") - 1));
    if (length >= parameter.minimum && length <= parameter.maximum)
        return std::nullopt;
    return badCustom(
        asked.keyword, asked.choice,
        hostText("CustomText").arg(numbered(parameter.minimum), numbered(parameter.maximum)));
}

std::optional<Error> reasonAgainstCustom(ppd_file_t* ppd, const ppd::Setting& asked) {
    if (asked.keyword == u"PageSize" || asked.keyword == u"PageRegion")
        return reasonAgainstPaper(*ppd, asked);
    const auto parameters = ppd::customParameters(ppd, asked.keyword.toUtf8().constData());
    if (parameters.size() != 1)
        return badCustom(asked.keyword, asked.choice,
                         hostText("CustomParts").arg(parameters.size()));
    using Type = ppd::CustomParameter::Type;
    const ppd::CustomParameter& only = parameters.front();
    return only.type == Type::Text || only.type == Type::Password
               ? reasonAgainstText(only, asked)
               : reasonAgainstNumber(only, asked);
}

} // namespace

Result<ppd::Setting> checkedSetting(ppd_file_t* ppd, const ppd::Setting& asked) {
    ppd_option_t* option = ppd::findOption(ppd, asked.keyword.toUtf8().constData());
    if (!option)
        return noOption(ppd, asked.keyword);
    ppd::Setting setting{QString::fromUtf8(option->keyword), asked.choice};
    const QString custom = QStringLiteral("Custom.");
    if (asked.choice.startsWith(custom, Qt::CaseInsensitive) && ppd::findChoice(option, "Custom")) {
        setting.choice.replace(0, custom.size(), custom);
        if (const auto reason = reasonAgainstCustom(ppd, setting))
            return *reason;
        return setting;
    }
    const bool isParts = asked.choice.startsWith(u'{') && asked.choice.endsWith(u'}');
    if (isParts && !ppd::customParameters(ppd, option->keyword).empty())
        return setting;
    for (const ppd_choice_t& choice : choicesOf(*option)) {
        const QString known = QString::fromUtf8(choice.choice);
        if (known != u"Custom" && known.compare(asked.choice, Qt::CaseInsensitive) == 0) {
            setting.choice = known;
            return setting;
        }
    }
    return noChoice(*option, asked.choice);
}

std::vector<ppd::Setting> jobSettings(ppd_file_t* ppd, const QStringList& keywords,
                                      const std::vector<ppd::Setting>& asked) {
    std::vector<ppd::Setting> settings;
    QStringList all{QStringLiteral("PageSize")};
    all += keywords;
    for (const ppd::Setting& setting : asked)
        all << setting.keyword;
    all.removeDuplicates();
    for (const QString& keyword : all) {
        const auto isIt = [&](const ppd::Setting& setting) { return setting.keyword == keyword; };
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
