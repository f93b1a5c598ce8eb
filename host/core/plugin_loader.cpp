// The host's core: finds plug-ins in a folder, reads what they say of themselves, loads them.
#include "host/core/plugin_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

#include <exception>

#include "host/texts/host_text.h"

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
        return {{}, hostText("PluginDamaged")};
    const QString iid = json.value(QLatin1String("IID")).toString();
    if (iid != QLatin1String(LabelcutPDEPlugin_iid))
        return {{},
                hostText("PluginOtherInterface").arg(iid, QLatin1String(LabelcutPDEPlugin_iid))};
    PluginMetadata metadata = readMetadata(json.value(QLatin1String("MetaData")).toObject());
    if (metadata.id.isEmpty())
        return {{}, hostText("PluginWithoutId")};
    const QString interfaceVersion = QString::number(kPDEInterfaceVersion);
    if (metadata.interfaceVersion < kPDEInterfaceVersion)
        return {{},
                hostText("PluginTooOld")
                    .arg(QString::number(metadata.interfaceVersion), interfaceVersion)};
    if (metadata.oldestCompatible > kPDEInterfaceVersion)
        return {{},
                hostText("PluginTooNew")
                    .arg(QString::number(metadata.oldestCompatible), interfaceVersion)};
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
        reason = root ? hostText("PluginWithoutPanels") : loader.errorString();
    } catch (const std::exception& error) {
        reason = hostText("PluginThrew").arg(QString::fromUtf8(error.what()));
    } catch (...) {
        reason = hostText("PluginThrewUnknown");
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
