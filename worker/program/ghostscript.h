// Worker: becoming Ghostscript.
#pragma once

#include "worker/protocol/descriptor.h"
#include "worker/protocol/message.h"

namespace labelcut::worker {

/// Closes the cage and turns this process into Ghostscript, which works in `folder`, see Interpret.
/// @return why that was not possible.
Failed interpret(const Interpret& request, const Descriptor& folder);

} // namespace labelcut::worker
