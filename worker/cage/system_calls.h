// Worker's cage: which system calls there are, by seccomp.
#pragma once

#include "worker/cage/cage.h"

namespace labelcut::worker {

/// From here on this process has only the system calls that reading a document takes; any other
/// fails. @return false when the kernel refuses the filter, see errno.
bool filterSystemCalls(const Cage& cage);

} // namespace labelcut::worker
