// Test support: texts in the messages of failing tests.
#pragma once

#include <QString>

#include <ostream>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << (text.isNull() ? "(null)" : '"' + text.toStdString() + '"');
}
QT_END_NAMESPACE
