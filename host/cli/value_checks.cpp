// The command line: values of a certain kind.
#include "host/cli/value_checks.h"

#include <QLocale>
#include <QString>

#include "host/cli/wrong_usage.h"
#include "host/core/handling.h"

namespace labelcut {

namespace {

/// @param isRight  whether a text is such a value. @param wanted  what to give. @param description
/// of the values, for the help.
CLI::Validator check(std::function<bool(const QString&)> isRight, const char* option,
                     const QString& wanted, const QString& description) {
    const QString name = QString::fromLatin1(option);
    return CLI::Validator(
        [isRight = std::move(isRight), name, wanted](std::string& value) {
            const QString text = QString::fromLocal8Bit(value.c_str());
            // That there is no value at all is told by requireValues().
            if (!text.isEmpty() && !isRight(text))
                rejectArguments(QStringLiteral("%1 %2: give %3").arg(name, text, wanted));
            return std::string();
        },
        description.toStdString());
}

/// The same for numbers. @param kind  what to give: "a number".
CLI::Validator check(std::function<bool(const QString&)> isRight, const char* option,
                     const QString& kind, const QString& lowest, const QString& highest,
                     const QString& description) {
    return check(std::move(isRight), option,
                 QStringLiteral("%1 from %2 to %3").arg(kind, lowest, highest),
                 QStringLiteral("%1 in [%2 - %3]").arg(description, lowest, highest));
}

} // namespace

CLI::Validator wholeNumber(const char* option, int lowest, int highest) {
    const auto isRight = [lowest, highest](const QString& text) {
        bool isNumber = false;
        const int value = text.toInt(&isNumber);
        // The parser would read "010" as 8.
        return isNumber && text == QString::number(value) && value >= lowest && value <= highest;
    };
    return check(isRight, option, QStringLiteral("a whole number"), QString::number(lowest),
                 QString::number(highest), QStringLiteral("INT"));
}

CLI::Validator fit(const char* option) {
    return check([](const QString& text) { return fitNamed(text).has_value(); }, option,
                 QStringLiteral("actual, scale or turn"), QStringLiteral("{actual,scale,turn}"));
}

CLI::Validator number(const char* option, double lowest, double highest) {
    const auto isRight = [lowest, highest](const QString& text) {
        QLocale plain = QLocale::c();
        plain.setNumberOptions(QLocale::RejectGroupSeparator);
        bool isNumber = false;
        const double value = plain.toDouble(text, &isNumber);
        // The parser takes no blanks. What is no number at all ("nan") is not within any range.
        return isNumber && text == text.trimmed() && value >= lowest && value <= highest;
    };
    return check(isRight, option, QStringLiteral("a number"), QString::number(lowest),
                 QString::number(highest), QStringLiteral("FLOAT"));
}

} // namespace labelcut
