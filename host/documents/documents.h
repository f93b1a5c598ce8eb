// Documents: what kind of file a document is, told by its content and never by its name, and its
// bytes.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include "host/core/call_limits.h"
#include "host/core/result.h"

namespace labelcut {

/// The kinds of file that can be printed.
enum class DocumentKind { PDF, PostScript, PNG, JPEG, SVG, PlainText };

/// The kind of the file at `path`. The failure is a sentence that names the file: it is missing, a
/// folder, no regular file, not readable, empty, or of a kind that is not printed.
Result<DocumentKind> documentKind(const QString& path);

/// Whether a file of that kind is drawn by Qt on its way to PDF; a QGuiApplication must then exist.
bool isDrawn(DocumentKind kind);

/// A document where nobody else writes.
struct DocumentCopy {
    QString path;
    /// Tells the content from any other.
    QByteArray digest;
};

/// Copies the file at `path` to the new file `target`: what is looked at and what is printed are
/// then the same, whatever becomes of the file meanwhile.
/// @param cancel  borrowed for the call; may be null.
/// @return the failure is a sentence that names the file: it cannot be read, or is being written
/// right now; or that names the target; or Cancelled.
Result<DocumentCopy> copyDocument(const QString& path, const QString& target,
                                  const CancelFlag* cancel = nullptr);

/// The whole file. The failure is a sentence that names it.
Result<QByteArray> readDocument(const QString& path);

/// The text in `bytes`: UTF-8, or UTF-16 with a byte order mark, with no control characters but
/// tab, line ends and form feed. Nothing when they are no such text.
std::optional<QString> decodedText(const QByteArray& bytes);

} // namespace labelcut
