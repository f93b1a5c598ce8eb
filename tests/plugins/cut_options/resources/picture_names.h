// Resource tests: the names under which the panel asks for its pictures.
#pragma once

#include <QString>
#include <QStringList>

namespace labelcut::test {

inline QStringList pictureNames() {
    const QStringList words{QStringLiteral("Off"), QStringLiteral("On")};
    QStringList names;
    for (const QString& mirror : words) {
        for (const char* cuts : {"OffOff", "OffOn", "OnOff"})
            names << QStringLiteral("EveryEndMirror") + QLatin1String(cuts) + mirror;
        names << QStringLiteral("SPMROn") + mirror;
        for (const QString& autoCut : words)
            for (const QString& half : words)
                for (const QString& chain : words)
                    names << QStringLiteral("AHCM") + autoCut + half + chain + mirror;
    }
    return names;
}

} // namespace labelcut::test
