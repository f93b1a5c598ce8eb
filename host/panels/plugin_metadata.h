// Panels: what a plug-in says of itself before it is loaded, and whether that fits.
#pragma once

#include <QJsonObject>
#include <QString>

#include "host/core/result.h"

namespace labelcut {

/// What a plug-in says of itself without being loaded; see platform/dialog/pde_plugin.h.
struct PluginMetadata {
    QString id;
    QString version;
    int interfaceVersion = 0;
    int oldestCompatible = 0;
    QString resources;
};

/// @param json  as Qt reads it from a shared object: any object; an empty one stands for a file
///              that is no plug-in.
/// @return the metadata of a plug-in that this host can use; else a sentence that says why not.
Result<PluginMetadata> checkedMetadata(const QJsonObject& json);

/// Root of the plug-in's bundle: a resource path, or a folder beside the shared object.
/// @param file  path of the shared object.
QString bundleRoot(const QString& file, const QString& resources);

} // namespace labelcut
