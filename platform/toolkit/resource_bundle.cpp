// Toolkit: a plug-in's bundle, read from a folder or from resources compiled into the plug-in.
#include "platform/toolkit/resource_bundle.h"

#include <QFileInfo>
#include <QTranslator>

#include <utility>

namespace labelcut {

namespace {
constexpr char kDefaultTable[] = "Localizable";
}

ResourceBundle::ResourceBundle(QString root, const QLocale& locale)
    : mRoot(std::move(root))
    , mLocale(locale) {}

ResourceBundle::~ResourceBundle() = default;

const QTranslator& ResourceBundle::table(const QString& name) const {
    auto& translator = mTables[name];
    if (!translator) {
        translator = std::make_unique<QTranslator>();
        const QString suffix = QStringLiteral(".qm");
        if (!translator->load(mLocale, name, QStringLiteral("_"), mRoot, suffix) &&
            !translator->load(name + QStringLiteral("_en") + suffix, mRoot))
            translator = std::make_unique<QTranslator>();
    }
    return *translator;
}

QString ResourceBundle::localizedStringForKey(const QString& key, const QString& value,
                                              const QString& tableName) const {
    const QString name = tableName.isEmpty() ? QString::fromLatin1(kDefaultTable) : tableName;
    const QString text = table(name).translate("", key.toUtf8().constData());
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
