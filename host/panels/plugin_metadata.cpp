// Panels: what a plug-in says of itself before it is loaded, and whether that fits.
#include "host/panels/plugin_metadata.h"

#include <QDir>
#include <QFileInfo>

#include "host/texts/host_text.h"
#include "platform/dialog/pde_plugin.h"

namespace labelcut {

namespace {

PluginMetadata readMetadata(const QJsonObject& json) {
    const int interfaceVersion = json.value(QLatin1String("interfaceVersion")).toInt();
    return {json.value(QLatin1String("id")).toString(),
            json.value(QLatin1String("version")).toString(), interfaceVersion,
            // One that does not say can live with its own version only.
            json.value(QLatin1String("oldestCompatible")).toInt(interfaceVersion),
            json.value(QLatin1String("resources")).toString()};
}

Error unusable(const QString& sentence) {
    return {ErrorKind::Other, sentence};
}

} // namespace

Result<PluginMetadata> checkedMetadata(const QJsonObject& json) {
    if (json.isEmpty())
        return unusable(hostText("PluginDamaged"));
    const QString iid = json.value(QLatin1String("IID")).toString();
    if (iid != QLatin1String(LabelcutPDEPlugin_iid))
        return unusable(
            hostText("PluginOtherInterface").arg(iid, QLatin1String(LabelcutPDEPlugin_iid)));
    PluginMetadata metadata = readMetadata(json.value(QLatin1String("MetaData")).toObject());
    if (metadata.id.isEmpty())
        return unusable(hostText("PluginWithoutId"));
    const QString interfaceVersion = QString::number(kPDEInterfaceVersion);
    if (metadata.interfaceVersion < kPDEInterfaceVersion)
        return unusable(hostText("PluginTooOld")
                            .arg(QString::number(metadata.interfaceVersion), interfaceVersion));
    if (metadata.oldestCompatible > kPDEInterfaceVersion)
        return unusable(hostText("PluginTooNew")
                            .arg(QString::number(metadata.oldestCompatible), interfaceVersion));
    return metadata;
}

QString bundleRoot(const QString& file, const QString& resources) {
    if (resources.startsWith(QLatin1String(":/")))
        return resources;
    return QFileInfo(file).dir().filePath(resources);
}

} // namespace labelcut
