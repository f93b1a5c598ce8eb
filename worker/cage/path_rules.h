// Worker's cage: which paths may be opened, by Landlock.
#pragma once

#include "worker/cage/cage.h"

namespace labelcut::worker {

/// Takes all rights to paths from this process but those that `cage` names. Does nothing where the
/// kernel has no Landlock. @return false when the kernel has it and refuses, see errno.
bool closePaths(const Cage& cage);

} // namespace labelcut::worker
