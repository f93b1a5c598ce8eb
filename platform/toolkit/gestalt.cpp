// Toolkit: the system-version query as plug-ins call it.
#include "platform/toolkit/gestalt.h"

namespace labelcut {

namespace {
const PDESystem* gestaltSystem = nullptr;
}

void setGestaltSystem(const PDESystem* system) {
    gestaltSystem = system;
}

OSStatus Gestalt(std::uint32_t selector, std::int32_t* value) {
    return gestaltSystem ? gestaltSystem->gestalt(selector, value) : kPMGeneralError;
}

} // namespace labelcut
