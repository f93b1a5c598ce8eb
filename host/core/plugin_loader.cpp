// The host's core: finds plug-ins in a folder, reads what they say of themselves, loads them.
#include "host/core/plugin_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

#include <exception>

namespace labelcut {

namespace {

/// Value or reason.
struct Checked {
    std::optional<PluginMetadata> metadata;
    QString reason;
};

PluginMetadata readMetadata(const QJsonObject& json) {
    const int interfaceVersion = json.value(QLatin1String("interfaceVersion")).toInt();
    return {json.value(QLatin1String("id")).toString(),
            json.value(QLatin1String("version")).toString(), interfaceVersion,
            // One that does not say can live with its own version only.
            json.value(QLatin1String("oldestCompatible")).toInt(interfaceVersion),
            json.value(QLatin1String("resources")).toString()};
}

Checked checkMetadata(const QPluginLoader& loader) {
    const QJsonObject json = loader.metaData();
    if (json.isEmpty())
        return {{}, QStringLiteral("it is not a plug-in, or it is damaged")};
    const QString iid = json.value(QLatin1String("IID")).toString();
    if (iid != QLatin1String(LabelcutPDEPlugin_iid))
        return {{},
                QStringLiteral("it offers the interface \"%1\", not panels (%2)")
                    .arg(iid, QLatin1String(LabelcutPDEPlugin_iid))};
    PluginMetadata metadata = readMetadata(json.value(QLatin1String("MetaData")).toObject());
    if (metadata.id.isEmpty())
        return {{}, QStringLiteral("its metadata has no \"id\"")};
    if (metadata.interfaceVersion < kPDEInterfaceVersion)
        return {{},
                QStringLiteral("it was built for version %1 of the interface, this is %2")
                    .arg(metadata.interfaceVersion)
                    .arg(kPDEInterfaceVersion)};
    if (metadata.oldestCompatible > kPDEInterfaceVersion)
        return {{},
                QStringLiteral("it needs version %1 of the interface, this is %2")
                    .arg(metadata.oldestCompatible)
                    .arg(kPDEInterfaceVersion)};
    return {std::move(metadata), {}};
}

QString bundleRoot(const QString& file, const QString& resources) {
    if (resources.startsWith(QLatin1String(":/")))
        return resources;
    return QFileInfo(file).dir().filePath(resources);
}

/// The root object's factory, or null with a reason. A constructor that throws is a reason too.
PDEPluginFactory* loadFactory(QPluginLoader& loader, QString& reason) {
    try {
        QObject* const root = loader.instance();
        if (auto* factory = qobject_cast<PDEPluginFactory*>(root))
            return factory;
        reason = root ? QStringLiteral("its root object offers no panels") : loader.errorString();
    } catch (const std::exception& error) {
        reason = QStringLiteral("its constructor failed: %1").arg(QString::fromUtf8(error.what()));
    } catch (...) {
        reason = QStringLiteral("its constructor failed");
    }
    return nullptr;
}

void loadPlugin(const QString& file, PluginSearch& search) {
    QPluginLoader loader(file);
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const Checked checked = checkMetadata(loader);
    if (!checked.metadata) {
        search.refused.push_back({file, checked.reason});
        return;
    }
    QString reason;
    PDEPluginFactory* factory = loadFactory(loader, reason);
    if (!factory) {
        search.refused.push_back({file, reason});
        return;
    }
    search.loaded.push_back(
        {file, *checked.metadata, factory, bundleRoot(file, checked.metadata->resources)});
}

} // namespace

PluginSearch loadPlugins(const QString& folder) {
    PluginSearch search;
    // Qt takes an empty name for the current folder.
    if (folder.isEmpty())
        return search;
    const QDir dir(folder);
    const QStringList files = dir.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
    for (const QString& name : files)
        loadPlugin(dir.absoluteFilePath(name), search);
    return search;
}

QString pluginFolder() {
    // Seen from the program: as it was installed, wherever that tree lies by now; in a build
    // folder.
    for (const char* folder : {LABELCUT_PLUGINS_FROM_PROGRAM, "../lib/labelcut/plugins"}) {
        const QDir beside(QCoreApplication::applicationDirPath() + u'/' + QLatin1String(folder));
        if (beside.exists())
            return beside.canonicalPath();
    }
    return QStringLiteral(LABELCUT_INSTALLED_PLUGINS);
}

} // namespace labelcut
