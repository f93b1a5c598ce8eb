// Panels: finds plug-ins in a folder, reads what they say of themselves, loads them.
#include "host/panels/plugin_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPluginLoader>

#include <exception>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

bool mayAnybodyWrite(const QString& path) {
    return QFile::permissions(path).testFlag(QFileDevice::WriteOther);
}

/// Code that anybody could have put there is not run: neither the file nor, links followed, the
/// folder that it lies in may be open to all.
QString reasonAgainstPlace(const QString& file) {
    const QString real = QFileInfo(file).canonicalFilePath();
    for (const QString& place : {real, QFileInfo(real).path(), QFileInfo(file).path()}) {
        if (mayAnybodyWrite(place))
            return hostText("PluginOpenToAll").arg(place);
    }
    return {};
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
    if (const QString reason = reasonAgainstPlace(file); !reason.isEmpty()) {
        search.refused.push_back({file, reason});
        return;
    }
    QPluginLoader loader(file);
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const Result<PluginMetadata> metadata = checkedMetadata(loader.metaData());
    if (!metadata) {
        search.refused.push_back({file, metadata.error().sentence});
        return;
    }
    QString reason;
    PDEPluginFactory* factory = loadFactory(loader, reason);
    if (!factory) {
        search.refused.push_back({file, reason});
        return;
    }
    search.loaded.push_back({file, *metadata, factory, bundleRoot(file, metadata->resources)});
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
