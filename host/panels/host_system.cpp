// Panels: the version of the extension interface that this host offers.
#include "host/panels/panel_host.h"

namespace labelcut {

OSStatus HostSystem::gestalt(std::uint32_t selector, std::int32_t* value) const {
    switch (selector) {
    case kSystemVersionMajor:
        *value = mVersion.major;
        return noErr;
    case kSystemVersionMinor:
        *value = mVersion.minor;
        return noErr;
    case kSystemVersionBugFix:
        *value = mVersion.bugFix;
        return noErr;
    default:
        return kPMInvalidParameter;
    }
}

} // namespace labelcut
