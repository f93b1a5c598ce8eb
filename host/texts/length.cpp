// Texts: lengths as users write them.
#include "host/texts/length.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr double kPointsPerInch = 72.0;
constexpr double kMillimetresPerInch = 25.4;

/// Paper is measured in inches in the United States and few other places; not in Britain.
bool usesMillimetres() {
    return QLocale().measurementSystem() != QLocale::ImperialUSSystem;
}

QString unit() {
    return usesMillimetres() ? QStringLiteral("mm") : QStringLiteral("in");
}

double unitsPerPoint() {
    return (usesMillimetres() ? kMillimetresPerInch : 1.0) / kPointsPerInch;
}

/// How many decimals a length has.
int decimalsToRead() {
    return usesMillimetres() ? 1 : 2;
}

/// How many it takes to tell hundredths of a millimetre apart.
int decimalsToEdit() {
    return usesMillimetres() ? 2 : 4;
}

QString lengthText(double points, int decimals) {
    const double value = points * unitsPerPoint();
    // PPDs know whole points: one that stands for a whole millimetre is shown as that.
    const double whole = std::round(value);
    const double factor = std::pow(10.0, decimals);
    const bool standsForWhole = usesMillimetres() && std::round(whole / unitsPerPoint()) == points;
    const double rounded = standsForWhole ? whole : std::round(value * factor) / factor;
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(rounded, 'f', QLocale::FloatingPointShortest) + u' ' + unit();
}

} // namespace

QString lengthForUser(double points) {
    return lengthText(points, decimalsToRead());
}

QString lengthToEdit(double points) {
    return lengthText(points, decimalsToEdit());
}

QString measureForUser(double width, double height) {
    return hostText("WidthByHeight").arg(lengthForUser(width), lengthForUser(height));
}

std::optional<double> pointsFromUser(const QString& text) {
    static const QRegularExpression length(
        QStringLiteral(R"(^\s*([\d.,\s]+?)\s*(mm|cm|in|pt)?\s*$)"),
        QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = length.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    bool ok = false;
    double value = QLocale().toDouble(match.captured(1), &ok);
    if (!ok)
        value = QLocale::c().toDouble(match.captured(1), &ok);
    if (!ok)
        return std::nullopt;
    const QString given = match.captured(2).isEmpty() ? unit() : match.captured(2).toLower();
    if (given == QLatin1String("pt"))
        return value;
    if (given == QLatin1String("in"))
        return value * kPointsPerInch;
    const double millimetres = given == QLatin1String("cm") ? value * 10 : value;
    return millimetres / kMillimetresPerInch * kPointsPerInch;
}

} // namespace labelcut
