// Printers: the queue that is meant when none is named.
#pragma once

#include <optional>

#include "host/service/cups_connection.h"
#include "host/settings/saved_options.h"

namespace labelcut {

/// What LPDEST or PRINTER says, else the default of the saved options, else the service's own. Only
/// for the last is the service asked, which blocks.
/// @param saved   what "lpoptions" keeps.
/// @param limits  for the request.
/// @return nothing when nobody has a default. Whether a queue that is named exists is not looked
/// at.
Result<std::optional<Destination>>
defaultQueue(const CupsConnection& service, const SavedOptions& saved, const CallLimits& limits);

} // namespace labelcut
