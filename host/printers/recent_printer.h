// Printers: which printer was used last.
#pragma once

#include <QString>

#include "host/core/result.h"

namespace labelcut {

struct RecentPrinter {
    enum class Kind { None, Queue, PpdFile };
    /// Which of the two below was used last.
    Kind kind = Kind::None;
    /// Empty: none was used so far. Either is kept while the other is in use.
    QString queue;
    QString ppdPath; ///< Absolute.
    bool operator==(const RecentPrinter&) const = default;
};

/// "labelcut/recent-printer.json" in the user's configuration folder.
QString recentPrinterFile();

/// None when nothing can be read from there, for whatever reason: it is only a convenience.
RecentPrinter recentPrinter(const QString& file = recentPrinterFile());
/// Remembers a queue by its name, or a PPD by its path, as the last one.
/// @return a failure is a sentence that names the file; the old one is intact then.
Result<Done> rememberQueue(const QString& name, const QString& file = recentPrinterFile());
Result<Done> rememberPpdFile(const QString& path, const QString& file = recentPrinterFile());

} // namespace labelcut
