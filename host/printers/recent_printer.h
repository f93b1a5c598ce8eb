// Printers: which queue was used last.
#pragma once

#include <QString>

#include "host/core/result.h"

namespace labelcut {

/// "labelcut/recent-printer.json" in the user's configuration folder; empty when there is none.
QString recentPrinterFile();

/// The name of the queue that was used last. Empty: none was so far, or nothing can be read from
/// the file, for whatever reason: it is only a convenience.
QString recentQueue(const QString& file = recentPrinterFile());
/// Remembers a queue by its name as the last one.
/// @return a failure is a sentence that names the file; the old one is intact then.
Result<Done> rememberQueue(const QString& name, const QString& file = recentPrinterFile());

} // namespace labelcut
