// Core: failures that have no kind of their own, and the one of calls that were stopped.
#pragma once

#include <QString>

#include <utility>

#include "host/core/result.h"

namespace labelcut {

/// A failure that no program tells apart. @param sentence  for the user: the thing by name, and the
/// way out.
inline Error failure(QString sentence) {
    return {ErrorKind::Other, std::move(sentence)};
}

/// The failure of whatever ended because its cancel flag was set.
Error cancelled();

} // namespace labelcut
