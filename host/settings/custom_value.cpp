// Settings: values that the user gives where a PPD allows custom ones.
#include "host/settings/custom_value.h"

#include <algorithm>
#include <utility>

#include "host/settings/saved_options.h"

namespace labelcut {

namespace {

using Parameter = ppd::CustomParameter;
using Type = Parameter::Type;

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

/// The length in points; a text that is no length stays as it is.
QString inPoints(const QString& digits, double pointsOfUnit) {
    bool isNumber = false;
    const double number = digits.toDouble(&isNumber);
    return isNumber ? ppd::pointsText(number * pointsOfUnit) : digits;
}

QString inPoints(const QString& length) {
    const auto [digits, points] = withoutUnit(length);
    return inPoints(digits, points);
}

/// PPDs round their limits to whole points, and written measures are rounded to their unit.
constexpr double kMeasureTolerance = 0.5;

bool isWithin(double value, double minimum, double maximum, double tolerance = 0) {
    return value >= minimum - tolerance && value <= maximum + tolerance;
}

bool isLabelSize(const QString& keyword) {
    return keyword.compare(kPageSize, Qt::CaseInsensitive) == 0 ||
           keyword.compare(kPageRegion, Qt::CaseInsensitive) == 0;
}

/// Width and height of "WIDTHxHEIGHT[unit]".
std::optional<QStringList> measuresOf(const QString& value) {
    const auto [measures, points] = withoutUnit(value);
    const QStringList parts = measures.split(u'x', Qt::KeepEmptyParts, Qt::CaseInsensitive);
    if (parts.size() != 2)
        return std::nullopt;
    return QStringList{inPoints(parts[0], points), inPoints(parts[1], points)};
}

bool isCustomSize(const ppd_file_t& ppd, const QStringList& measures) {
    const auto isMeasure = [&](qsizetype side) {
        bool isNumber = false;
        const double points = measures[side].toDouble(&isNumber);
        return isNumber && isWithin(points, static_cast<double>(ppd.custom_min[side]),
                                    static_cast<double>(ppd.custom_max[side]), kMeasureTolerance);
    };
    return ppd.variable_sizes != 0 && isMeasure(0) && isMeasure(1);
}

/// @param value  a length in points.
bool isValueOf(const Parameter& parameter, const QString& value) {
    bool isNumber = true;
    double number = 0;
    double tolerance = 0;
    switch (parameter.type) {
    case Type::Integer:
        number = value.toInt(&isNumber);
        break;
    case Type::Real:
        number = value.toDouble(&isNumber);
        break;
    case Type::Points:
        number = value.toDouble(&isNumber);
        tolerance = kMeasureTolerance;
        break;
    case Type::Text:
    case Type::Password:
        number = static_cast<double>(value.toUcs4().size());
        break;
    }
    return isNumber && isWithin(number, parameter.minimum, parameter.maximum, tolerance);
}

QString valueOf(const Parameter& parameter, const QString& written) {
    return parameter.type == Type::Points ? inPoints(written) : written;
}

} // namespace

bool isCustomValue(const QString& choice) {
    return choice.startsWith(kCustom + u'.', Qt::CaseInsensitive) || choice.startsWith(u'{');
}

bool takesCustomValue(ppd_file_t* ppd, const ppd_option_t& option, const QString& choice) {
    const QString keyword = QString::fromUtf8(option.keyword);
    const CustomForm form(ppd, keyword);
    const std::optional<QStringList> values = form.takenApart(choice);
    if (!values)
        return false;
    if (isLabelSize(keyword))
        return isCustomSize(*ppd, *values);
    return std::ranges::equal(form.parameters(), *values, isValueOf);
}

bool isWithinBounds(const Parameter& parameter, double number) {
    return isWithin(number, parameter.minimum, parameter.maximum);
}

CustomForm::CustomForm(ppd_file_t* ppd, const QString& keyword)
    : mIsLabelSize(isLabelSize(keyword))
    , mParameters(ppd::customParameters(ppd, keyword.toUtf8().constData())) {
    if (!mIsLabelSize)
        return;
    const QStringList sides{QStringLiteral("Width"), QStringLiteral("Height")};
    std::erase_if(mParameters, [&](const Parameter& parameter) {
        return !sides.contains(parameter.name, Qt::CaseInsensitive);
    });
    std::ranges::stable_sort(mParameters, {}, [&](const Parameter& parameter) {
        return parameter.name.compare(sides[1], Qt::CaseInsensitive) == 0;
    });
}

QString CustomForm::composed(const QStringList& values) const {
    if (mIsLabelSize || values.size() == 1)
        return kCustom + u'.' + values.join(u'x');
    Settings named;
    for (std::size_t i = 0; i < mParameters.size(); ++i)
        named.push_back({mParameters[i].name, values.value(static_cast<qsizetype>(i))});
    return ppd::customCollection(named);
}

std::optional<QStringList> CustomForm::takenApart(const QString& choice) const {
    if (!isCustomValue(choice))
        return std::nullopt;
    const bool isCollection = choice.startsWith(u'{');
    if (isCollection)
        return mIsLabelSize ? std::nullopt : collected(choice);
    const QString value = choice.mid(kCustom.size() + 1);
    if (mIsLabelSize)
        return measuresOf(value);
    if (mParameters.size() != 1)
        return std::nullopt;
    return QStringList{valueOf(mParameters.front(), value)};
}

/// @param collection  "{NAME=VALUE …}", in any order.
std::optional<QStringList> CustomForm::collected(const QString& collection) const {
    const Settings pairs = parseOptionText(collection.toUtf8());
    if (!collection.endsWith(u'}') || pairs.size() != mParameters.size())
        return std::nullopt;
    QStringList values;
    for (const Parameter& parameter : mParameters) {
        const auto pair = std::ranges::find_if(pairs, [&](const Setting& one) {
            return one.keyword.compare(parameter.name, Qt::CaseInsensitive) == 0;
        });
        if (pair == pairs.end())
            return std::nullopt;
        values << valueOf(parameter, pair->choice);
    }
    return values;
}

} // namespace labelcut
