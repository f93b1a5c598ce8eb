// Panels: a plug-in's bundle, read from a folder or from resources compiled into the plug-in.
#include "host/panels/resource_bundle.h"

#include <QFileInfo>

#include <utility>

namespace labelcut {

namespace {
const QString& defaultTable() {
    static const QString name = QStringLiteral("Localizable");
    return name;
}
} // namespace

ResourceBundle::ResourceBundle(QString root, const QLocale& locale)
    : mRoot(std::move(root))
    , mLocale(locale) {}

const TextTable& ResourceBundle::table(const QString& name) const {
    if (const auto known = mTables.find(name); known != mTables.end())
        return known->second;
    return mTables.try_emplace(name, mRoot, name, mLocale).first->second;
}

QString ResourceBundle::localizedStringForKey(const QString& key, const QString& value,
                                              const QString& tableName) const {
    const QString& name = tableName.isEmpty() ? defaultTable() : tableName;
    const QString text = table(name).find(key.toUtf8().constData());
    if (!text.isNull())
        return text;
    return value.isNull() ? key : value;
}

QString ResourceBundle::existing(const QString& name,
                                 std::initializer_list<const char*> suffixes) const {
    if (name.isEmpty() || name.contains(u'/'))
        return {};
    for (const char* suffix : suffixes) {
        const QString path = mRoot + u'/' + name + QLatin1String(suffix);
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}

QString ResourceBundle::pathForImageResource(const QString& name) const {
    return existing(name, {".svg", ".png"});
}

QString ResourceBundle::pathForInterfaceFile(const QString& name) const {
    return existing(name, {".ui"});
}

} // namespace labelcut
