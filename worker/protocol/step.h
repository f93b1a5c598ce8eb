// Worker: how those who read tell that they get on.
#pragma once

#include <functional>

namespace labelcut::worker {

/// Tells that work came nearer to its end: never so often without an end. Never empty.
using Step = std::function<void()>;

} // namespace labelcut::worker
