// Panels: finds plug-ins in a folder, reads what they say of themselves, loads them.
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

#include "host/panels/plugin_metadata.h"
#include "platform/dialog/pde_plugin.h"

namespace labelcut {

/// A plug-in that is loaded. It stays loaded until the process ends.
struct LoadedPlugin {
    QString file;
    PluginMetadata metadata;
    PDEPluginFactory* factory = nullptr;
    /// Root folder (or resource path) of its bundle.
    QString bundleRoot;
};

/// A file in the plug-in folder that was not taken, and why: a sentence for a log or a user.
struct RefusedPlugin {
    QString file;
    QString reason;
};

struct PluginSearch {
    std::vector<LoadedPlugin> loaded;
    std::vector<RefusedPlugin> refused;
};

/// Loads every shared object of `folder` that fits and that not just anybody may have put there, in
/// the order of their file names. A folder that does not exist, and an empty name, give an empty
/// search. Never throws; a file that cannot be used is listed.
PluginSearch loadPlugins(const QString& folder);

/// The folder that plug-ins are loaded from: beside the program in a build tree, else the install
/// folder. Never the current folder.
QString pluginFolder();

} // namespace labelcut
