// The automation driver: reading the fields of a line, strictly.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <cmath>
#include <limits>
#include <optional>

namespace labelcut::script {

/// A line that cannot be carried out; the text is the answer's "error".
struct Refusal {
    QString reason;
};

[[noreturn]] inline void refuse(const QString& reason) {
    throw Refusal{reason};
}

inline QJsonValue required(const QJsonObject& object, const char* name) {
    const QJsonValue value = object.value(QLatin1String(name));
    if (value.isUndefined())
        refuse(QStringLiteral("the field \"%1\" is missing").arg(QLatin1String(name)));
    return value;
}

[[noreturn]] inline void refuseType(const char* name, const char* wanted) {
    refuse(QStringLiteral("the field \"%1\" must be %2")
               .arg(QLatin1String(name), QLatin1String(wanted)));
}

inline QString text(const QJsonObject& object, const char* name) {
    const QJsonValue value = required(object, name);
    if (!value.isString())
        refuseType(name, "a string");
    return value.toString();
}

/// A string or null; a missing field counts as null.
inline std::optional<QString> textOrNull(const QJsonObject& object, const char* name) {
    const QJsonValue value = object.value(QLatin1String(name));
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    if (!value.isString())
        refuseType(name, "a string or null");
    return value.toString();
}

inline double number(const QJsonObject& object, const char* name) {
    const QJsonValue value = required(object, name);
    if (!value.isDouble())
        refuseType(name, "a number");
    return value.toDouble();
}

inline int integerValue(const QJsonValue& value, const char* name) {
    const double read =
        value.isDouble() ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
    if (std::trunc(read) != read || read < std::numeric_limits<int>::min() ||
        read > std::numeric_limits<int>::max())
        refuseType(name, "a whole number of 32 bits");
    return static_cast<int>(read);
}

inline int integer(const QJsonObject& object, const char* name) {
    return integerValue(required(object, name), name);
}

} // namespace labelcut::script
