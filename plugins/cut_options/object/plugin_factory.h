// Plug-in frame: the root object of the shared object.
#pragma once

#include <QObject>

#include "platform/dialog/pde_plugin.h"

namespace labelcut {

class PluginFactory : public QObject, public PDEPluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LabelcutPDEPlugin_iid FILE "plugin.json")
    Q_INTERFACES(labelcut::PDEPluginFactory)
public:
    std::unique_ptr<PDEPlugin> create(const PDESystem& system) override;
};

} // namespace labelcut
