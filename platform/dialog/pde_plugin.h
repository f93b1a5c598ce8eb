// The print dialog's extension interface: how a shared object offers panels.
//
// A plug-in is a Qt plug-in whose root object implements PDEPluginFactory:
//
//     class Factory : public QObject, public labelcut::PDEPluginFactory {
//         Q_OBJECT
//         Q_PLUGIN_METADATA(IID LabelcutPDEPlugin_iid FILE "plugin.json")
//         Q_INTERFACES(labelcut::PDEPluginFactory)
//     public:
//         std::unique_ptr<labelcut::PDEPlugin> create(const labelcut::PDESystem&) override;
//     };
//
// plugin.json is read before the object is loaded and holds
//     "id"                a reverse-DNS name of the plug-in (string),
//     "version"           the plug-in's own version, for people (string),
//     "interfaceVersion"  kPDEInterfaceVersion it was built with (number),
//     "oldestCompatible"  the oldest interface version it can live with (number),
//     "resources"         the root of its bundle: a resource path beginning ":/", made unique per
//                         version (resources of two versions share one name space), or a folder
//                         relative to the shared object (string).
#pragma once

#include <QString>
#include <QtPlugin>

#include <memory>
#include <vector>

#include "platform/dialog/pde_bundle.h"
#include "platform/dialog/pde_panel.h"
#include "platform/dialog/pde_plugin_callback.h"
#include "platform/dialog/pde_system.h"

#define LabelcutPDEPlugin_iid "org.labelcut.PDEPluginFactory/1"

namespace labelcut {

/// The version of this interface. It grows by one with every change that a plug-in can notice.
inline constexpr int kPDEInterfaceVersion = 3;

/// The type identifier under which the dialog asks for panels of printer modules.
inline constexpr char kPDEPrinterModuleType[] = "BDB091F4-E57F-11D3-B5CC-0050E4603277";

using PDEPanelArray = std::vector<std::unique_ptr<PDEPanel>>;

/// A plug-in's principal object. The dialog creates one, and it outlives its panels' use.
class PDEPlugin {
public:
    virtual ~PDEPlugin() = default;

    /// First call after creation. @param bundle  the plug-in's resources, never null; shared.
    /// @return false when the plug-in cannot serve on this system; it is then not used.
    virtual bool initWithBundle(std::shared_ptr<const PDEBundle> bundle) = 0;

    /// Create the plug-in's panels for one dialog.
    /// @param type      which panels; compared as a whole, case included.
    /// @param hostInfo  the host callback, never null; shared by the panels.
    /// @return the panels, owned by the principal object until the next call or its end; an empty
    ///         array for a type it does not serve; null when creation failed.
    virtual PDEPanelArray* PDEPanelsForType(const QString& type,
                                            std::shared_ptr<PDEPluginCallback> hostInfo) = 0;
};

/// The root object of a plug-in's shared object.
class PDEPluginFactory {
public:
    virtual ~PDEPluginFactory() = default;

    /// A new principal object. @param system  the system-version query; outlives the plug-in.
    virtual std::unique_ptr<PDEPlugin> create(const PDESystem& system) = 0;
};

} // namespace labelcut

Q_DECLARE_INTERFACE(labelcut::PDEPluginFactory, LabelcutPDEPlugin_iid)
