// The job: what cannot be printed, and why.
#pragma once

#include <QString>

#include <utility>

#include "platform/printing/result.h"

namespace labelcut {

/// A failure that no program tells apart. @param sentence  for the user: the thing by name, and the
/// way out.
inline Error failure(QString sentence) {
    return {ErrorKind::Other, std::move(sentence)};
}

} // namespace labelcut
