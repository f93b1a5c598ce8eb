// The command line: JSON that a terminal shows as it is.
#include "host/cli/json_text.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "host/core/harmless_text.h"

namespace labelcut {

QString harmlessJson(const QByteArray& json) {
    QString text;
    for (const QChar c : QString::fromUtf8(json)) {
        if (c == u'\n' || !isActedOn(c))
            text += c;
        else
            text += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return text;
}

std::string jsonString(const QString& text) {
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return harmlessJson(list.mid(1, list.size() - 2)).toStdString();
}

} // namespace labelcut
