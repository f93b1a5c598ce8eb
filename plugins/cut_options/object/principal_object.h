// Plug-in frame: the principal object, which the dialog creates and asks for panels.
#pragma once

#include <memory>
#include <optional>

#include "platform/dialog/pde_plugin.h"

namespace labelcut {

class KVSGRVOptions13PlugIn13_v400_ : public PDEPlugin {
public:
    /// False on a system older than 10.5; the plug-in is then not used.
    bool initWithBundle(std::shared_ptr<const PDEBundle> bundle) override;
    /// One cut-options panel for the printer-module type, an empty array for any other type.
    PDEPanelArray* PDEPanelsForType(const QString& type,
                                    std::shared_ptr<PDEPluginCallback> hostInfo) override;
    /// Whether the system is at least 10.5. Asked once per process.
    static bool runningOnLeopardOrLater();

private:
    /// The host's; the panels share it.
    std::weak_ptr<const PDEBundle> pluginBundle;
    std::optional<PDEPanelArray> pdes;
};

/// The version test itself: 11 and more, or 10 with a minor version above 4. What a failing query
/// leaves unknown counts as 10.4.0.
bool systemIsLeopardOrLater();

} // namespace labelcut
