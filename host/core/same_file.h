// Core: whether two names lead to one file.
#pragma once

#include <QString>
#include <QStringList>

#include <sys/stat.h>

#include <optional>

#include "host/core/result.h"

namespace labelcut {

/// Whether the system says the same file's state in both.
bool isSameFile(const struct stat& one, const struct stat& other);

/// The first of `files` that is the file `path` itself, by whatever names and links; nothing when
/// none is, or nothing is there. Names as nameFromBytes() gives them.
std::optional<QString> sameFileAmong(const QString& path, const QStringList& files);

/// Why `output` must not be written: it is one of the files `inUse`, which would be replaced. The
/// failure names both.
std::optional<Error> reasonAgainstReplacing(const QString& output, const QStringList& inUse);

} // namespace labelcut
