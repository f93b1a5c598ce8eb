// Presets: what a printer's PPD makes of choices that were kept.
#include "host/presets/preset_match.h"

#include <algorithm>
#include <iterator>

#include "host/presets/saved_defaults.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

const QString kPageSize = QStringLiteral("PageSize");
const QString kCustom = QStringLiteral("Custom");

bool isCustomValue(const QString& choice) {
    return choice.startsWith(QStringLiteral("Custom."), Qt::CaseInsensitive) ||
           choice.startsWith(u'{');
}

/// Points in one of a unit that the end of a custom value names; nothing for other endings.
struct Unit {
    QLatin1String name;
    double points;
};
constexpr Unit kUnits[] = {
    {QLatin1String("pt"), 1},         {QLatin1String("in"), 72},
    {QLatin1String("ft"), 864},       {QLatin1String("mm"), 72 / 25.4},
    {QLatin1String("cm"), 72 / 2.54}, {QLatin1String("m"), 72 / 0.0254},
};

/// Splits "500mm" into its number and the points of its unit; without a unit these are points.
std::pair<QString, double> withoutUnit(const QString& text) {
    for (const Unit& unit : kUnits)
        if (text.endsWith(unit.name, Qt::CaseInsensitive))
            return {text.chopped(unit.name.size()), unit.points};
    return {text, 1};
}

/// PPDs round their limits to whole points, and written measures are rounded to their unit.
constexpr double kMeasureTolerance = 0.5;

bool isWithin(double value, double minimum, double maximum, double tolerance = 0) {
    return value >= minimum - tolerance && value <= maximum + tolerance;
}

/// Whether "Custom.WIDTHxLENGTH[unit]" is a measure that the PPD allows.
bool isCustomSize(const ppd_file_t& ppd, const QString& value) {
    const auto [measures, points] = withoutUnit(value);
    const QStringList parts = measures.split(u'x', Qt::KeepEmptyParts, Qt::CaseInsensitive);
    if (parts.size() != 2 || ppd.variable_sizes == 0)
        return false;
    bool hasWidth = false;
    bool hasLength = false;
    const double width = parts.at(0).toDouble(&hasWidth) * points;
    const double length = parts.at(1).toDouble(&hasLength) * points;
    return hasWidth && hasLength &&
           isWithin(width, static_cast<double>(ppd.custom_min[0]),
                    static_cast<double>(ppd.custom_max[0]), kMeasureTolerance) &&
           isWithin(length, static_cast<double>(ppd.custom_min[1]),
                    static_cast<double>(ppd.custom_max[1]), kMeasureTolerance);
}

bool isValueOf(const ppd::CustomParameter& parameter, const QString& value) {
    using Type = ppd::CustomParameter::Type;
    bool isNumber = false;
    double number = 0;
    double tolerance = 0;
    switch (parameter.type) {
    case Type::Integer:
        number = value.toInt(&isNumber);
        break;
    case Type::Real:
        number = value.toDouble(&isNumber);
        break;
    case Type::Points: {
        const auto [digits, points] = withoutUnit(value);
        number = digits.toDouble(&isNumber) * points;
        tolerance = kMeasureTolerance;
        break;
    }
    case Type::Text:
    case Type::Password:
        isNumber = true;
        number = static_cast<double>(value.toUcs4().size());
        break;
    }
    return isNumber && isWithin(number, parameter.minimum, parameter.maximum, tolerance);
}

bool isCustomCollection(const std::vector<ppd::CustomParameter>& parameters,
                        const QString& collection) {
    const std::vector<ppd::Setting> pairs = parseOptionText(collection.toUtf8());
    const auto isGood = [&](const ppd::CustomParameter& parameter) {
        const auto pair = std::ranges::find_if(pairs, [&](const ppd::Setting& one) {
            return one.keyword.compare(parameter.name, Qt::CaseInsensitive) == 0;
        });
        return pair != pairs.end() && isValueOf(parameter, pair->choice);
    };
    return collection.endsWith(u'}') && pairs.size() == parameters.size() &&
           std::ranges::all_of(parameters, isGood);
}

/// Whether the custom choice of `option`, which has one, can take `choice`.
bool isGoodCustom(ppd_file_t* ppd, const ppd_option_t& option, const QString& choice) {
    const QString value = choice.startsWith(u'{') ? QString() : choice.mid(kCustom.size() + 1);
    if (kPageSize.compare(QLatin1String(option.keyword), Qt::CaseInsensitive) == 0)
        return !value.isEmpty() && isCustomSize(*ppd, value);
    const std::vector<ppd::CustomParameter> parameters = ppd::customParameters(ppd, option.keyword);
    if (choice.startsWith(u'{'))
        return isCustomCollection(parameters, choice);
    return parameters.size() == 1 && isValueOf(parameters.front(), value);
}

void matchOne(ppd_file_t* ppd, const ppd::Setting& setting, PresetMatch& match) {
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
    if (isCustom && !isGoodCustom(ppd, *option, setting.choice))
        return leaveOut(Reason::BadValue);
    match.applicable.push_back({QString::fromUtf8(option->keyword),
                                isCustom ? setting.choice : QString::fromUtf8(choice->choice)});
}

QString titleOf(ppd_file_t* ppd, const QString& keyword) {
    const ppd_option_t* option = ppd::findOption(ppd, keyword.toUtf8().constData());
    return option ? QString::fromUtf8(option->text) : keyword;
}

} // namespace

PresetMatch matchSettings(ppd_file_t* ppd, const std::vector<ppd::Setting>& settings) {
    PresetMatch match;
    for (const ppd::Setting& setting : settings)
        matchOne(ppd, setting, match);
    // Marking a page size changes other marks, which are to stand as they were kept.
    std::stable_partition(match.applicable.begin(), match.applicable.end(),
                          [](const ppd::Setting& setting) { return setting.keyword == kPageSize; });
    return match;
}

PresetMatch matchPreset(ppd_file_t* ppd, const Preset& preset) {
    PresetMatch match = matchSettings(ppd, preset.settings());
    match.copies = preset.copies;
    return match;
}

QString describe(ppd_file_t* ppd, const MissingChoice& missing) {
    const QString typed = QStringLiteral("%1=%2").arg(missing.keyword, missing.choice);
    if (missing.reason == MissingChoice::Reason::NoSuchOption)
        return hostText("OptionGone").arg(missing.keyword, typed);
    const bool isBadValue = missing.reason == MissingChoice::Reason::BadValue;
    return hostText(isBadValue ? "ValueRefused" : "ChoiceGone")
        .arg(titleOf(ppd, missing.keyword), missing.choice, typed);
}

QStringList describe(ppd_file_t* ppd, const std::vector<MissingChoice>& missing) {
    QStringList sentences;
    std::ranges::transform(missing, std::back_inserter(sentences),
                           [&](const MissingChoice& one) { return describe(ppd, one); });
    return sentences;
}

} // namespace labelcut
