// Plug-in frame: the root object of the shared object.
#include "plugins/cut_options/object/plugin_factory.h"

#include "platform/toolkit/gestalt.h"
#include "plugins/cut_options/object/principal_object.h"

namespace labelcut {

std::unique_ptr<PDEPlugin> PluginFactory::create(const PDESystem& system) {
    setGestaltSystem(&system);
    return std::make_unique<KVSGRVOptions13PlugIn13_v400_>();
}

} // namespace labelcut
