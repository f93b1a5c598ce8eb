// Settings: values that the user gives where a PPD allows custom ones.
#include "host/settings/custom_value.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/settings/saved_options.h"

namespace labelcut {

namespace {

const QString kCustom = QStringLiteral("Custom");

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
    const Settings pairs = parseOptionText(collection.toUtf8());
    const auto isGood = [&](const ppd::CustomParameter& parameter) {
        const auto pair = std::ranges::find_if(pairs, [&](const Setting& one) {
            return one.keyword.compare(parameter.name, Qt::CaseInsensitive) == 0;
        });
        return pair != pairs.end() && isValueOf(parameter, pair->choice);
    };
    return collection.endsWith(u'}') && pairs.size() == parameters.size() &&
           std::ranges::all_of(parameters, isGood);
}

bool isPaper(const ppd_option_t& option) {
    return qstricmp(option.keyword, "PageSize") == 0 || qstricmp(option.keyword, "PageRegion") == 0;
}

} // namespace

bool isCustomValue(const QString& choice) {
    return choice.startsWith(kCustom + u'.', Qt::CaseInsensitive) || choice.startsWith(u'{');
}

bool takesCustomValue(ppd_file_t* ppd, const ppd_option_t& option, const QString& choice) {
    const QString value = choice.startsWith(u'{') ? QString() : choice.mid(kCustom.size() + 1);
    if (isPaper(option))
        return !value.isEmpty() && isCustomSize(*ppd, value);
    const std::vector<ppd::CustomParameter> parameters = ppd::customParameters(ppd, option.keyword);
    if (choice.startsWith(u'{'))
        return isCustomCollection(parameters, choice);
    return parameters.size() == 1 && isValueOf(parameters.front(), value);
}

} // namespace labelcut
