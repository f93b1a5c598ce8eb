// Plug-in frame: the principal object.
#include "plugins/cut_options/object/principal_object.h"

#include <utility>

#include "platform/toolkit/gestalt.h"
#include "plugins/cut_options/options/option_pde.h"

namespace labelcut {

bool systemIsLeopardOrLater() {
    std::int32_t major = 10;
    std::int32_t minor = 4;
    std::int32_t bugFix = 0;
    Gestalt(kSystemVersionMajor, &major);
    Gestalt(kSystemVersionMinor, &minor);
    Gestalt(kSystemVersionBugFix, &bugFix);
    return major >= 11 || (major == 10 && minor > 4);
}

bool KVSGRVOptions13PlugIn13_v400_::runningOnLeopardOrLater() {
    static const bool cached = systemIsLeopardOrLater();
    return cached;
}

bool KVSGRVOptions13PlugIn13_v400_::initWithBundle(std::shared_ptr<const PDEBundle> bundle) {
    if (!runningOnLeopardOrLater())
        return false;
    pluginBundle = bundle;
    return true;
}

PDEPanelArray*
KVSGRVOptions13PlugIn13_v400_::PDEPanelsForType(const QString& type,
                                                std::shared_ptr<PDEPluginCallback> hostInfo) {
    pdes.emplace();
    if (type != QLatin1String(kPDEPrinterModuleType))
        return &*pdes;
    auto panel = std::make_unique<OptionPDE13_v400_>();
    if (panel->initWithCallback(std::move(hostInfo), pluginBundle.lock()))
        pdes->push_back(std::move(panel));
    if (!pdes->empty())
        return &*pdes;
    pdes.reset();
    return nullptr;
}

} // namespace labelcut
