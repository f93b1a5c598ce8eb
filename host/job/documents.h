// The job: what kind of file a document is, told by its content and never by its name.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include "platform/printing/result.h"

namespace labelcut {

/// The kinds of file that can be printed.
enum class DocumentKind { PDF, PostScript, PNG, JPEG, SVG, PlainText };

/// The kind of the file at `path`. The failure is a sentence that names the file: it is missing, a
/// folder, no regular file, not readable, empty, or of a kind that is not printed.
Result<DocumentKind> documentKind(const QString& path);

/// Whether a file of that kind is drawn by Qt on its way to PDF; a QGuiApplication must then exist.
bool isDrawn(DocumentKind kind);

/// The whole file. The failure is a sentence that names it.
Result<QByteArray> readDocument(const QString& path);

/// The text in `bytes`: UTF-8, or UTF-16 with a byte order mark, with no control characters but
/// tab, line ends and form feed. Nothing when they are no such text.
std::optional<QString> decodedText(const QByteArray& bytes);

} // namespace labelcut
