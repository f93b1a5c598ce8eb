// The command line: JSON that a terminal shows as it is.
#pragma once

#include <QByteArray>
#include <QString>

#include <string>

namespace labelcut {

/// JSON that says the same without any character that a terminal would act on.
QString harmlessJson(const QByteArray& json);

/// The text as a JSON string in its quotation marks, harmless in the same way. UTF-8.
std::string jsonString(const QString& text);

} // namespace labelcut
