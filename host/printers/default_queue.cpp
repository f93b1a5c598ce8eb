// Printers: the queue that is meant when none is named.
#include "host/printers/default_queue.h"

namespace labelcut {

Result<std::optional<Destination>>
defaultQueue(const CupsConnection& service, const SavedOptions& saved, const CallLimits& limits) {
    if (auto named = defaultDestination(saved))
        return named;
    const Result<std::optional<QString>> queue = service.defaultQueue(limits);
    if (!queue)
        return queue.error();
    if (!*queue)
        return std::optional<Destination>();
    return std::optional(Destination{**queue, QString()});
}

} // namespace labelcut
