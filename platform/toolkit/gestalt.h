// Toolkit: the system-version query as plug-ins call it.
#pragma once

#include <cstdint>

#include "platform/dialog/pde_system.h"

namespace labelcut {

/// Which system Gestalt() asks; null: every query fails. Borrowed. The factory of a plug-in sets it
/// with the system that the host hands over.
void setGestaltSystem(const PDESystem* system);

/// Asks the system; see PDESystem::gestalt().
OSStatus Gestalt(std::uint32_t selector, std::int32_t* value);

} // namespace labelcut
