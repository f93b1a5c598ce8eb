// Core: failures that have no kind of their own, and the one of calls that were stopped.
#include "host/core/failure.h"

#include "host/texts/host_text.h"

namespace labelcut {

Error cancelled() {
    return {ErrorKind::Cancelled, hostText("Cancelled")};
}

} // namespace labelcut
