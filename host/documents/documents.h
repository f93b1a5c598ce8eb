// Documents: the files that the user names, and their bytes. What is in them, the worker tells.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include "host/core/call_limits.h"
#include "host/core/result.h"

namespace labelcut {

/// A larger document is refused. Bytes.
inline constexpr qint64 kLargestDocument = 2LL << 30;

/// The failure of a document that is larger than `limit` bytes, or becomes so.
/// @param about  what the user calls it.
Error tooLarge(const QString& about, qint64 limit);

/// A document where nobody else writes.
struct DocumentCopy {
    QString path;
    /// Tells the content from any other; empty where nobody wants it.
    QByteArray digest;
};

/// Whether a copy's digest is taken, which costs more than the copying.
enum class CopyDigest { Taken, Unneeded };

/// Copies the file at `path` to the new file `target`: what is looked at and what is printed are
/// then the same, whatever becomes of the file meanwhile.
/// @param cancel  borrowed for the call; may be null.
/// @return the failure is a sentence that names the file: it is missing, a folder, no regular file,
/// empty, too large, not readable, or is being written right now; or that names the target; or
/// Cancelled.
Result<DocumentCopy> copyDocument(const QString& path, const QString& target,
                                  const CancelFlag* cancel = nullptr,
                                  CopyDigest digest = CopyDigest::Taken);

} // namespace labelcut
