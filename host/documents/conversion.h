// Documents: documents of every kind become PDF.
#pragma once

#include <QString>

#include <optional>

#include "host/core/call_limits.h"
#include "host/documents/documents.h"
#include "host/documents/paper.h"

namespace labelcut {

/// Turns the file at `path`, of kind `kind`, into a PDF file in `folder`.
///
/// A PDF stays what it is: its own path is the answer. PostScript is interpreted by Ghostscript
/// and keeps its page sizes. Everything else is drawn by Qt (see isDrawn()) on pages of `paper`: a
/// picture scaled to fit the printable area and turned when that makes it larger, text in a
/// fixed-pitch font, wrapped, a form feed starting a new page.
///
/// @param about   what the user calls the file, for sentences.
/// @param paper   nothing: A4.
/// @param folder  private to the job. @param name  bare name for the new file, without extension.
/// @param cancel  borrowed for the call; may be null. Ends an interpretation that takes its time.
/// @return path of the PDF; the failure is a sentence that names the file, or Cancelled.
Result<QString> convertToPdf(const QString& path, const QString& about, DocumentKind kind,
                             const std::optional<JobPaper>& paper, const QString& folder,
                             const QString& name, const CancelFlag* cancel = nullptr);

} // namespace labelcut
