// Printers: where they come from.
//
// A source knows printers of one kind by their PrinterRef, and finds what is needed to open one.
// Printers of a new kind take an alternative of PrinterRef, a source, and a row in findPrinter().
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/printers/printer_ref.h"
#include "host/service/cups_connection.h"
#include "host/settings/ppd_calls.h"
#include "host/settings/setting.h"

namespace labelcut {

/// A printer that was found: everything that opening it takes.
struct FoundPrinter {
    PrinterRef ref;
    /// For people, one line of plain text.
    QString title;
    /// Never null; the PPD's defaults are marked.
    ppd::File ppd;
    /// Nothing for a printer without a queue.
    std::optional<Queue> queue;
    /// What the user has saved for it beyond the PPD's defaults, as far as the printer has it;
    /// spelled as in the PPD.
    Settings saved;
    /// Sentences about what was left out on the way, such as saved options that the printer lacks.
    QStringList notes;
};

/// Finds a printer; blocks, so call it on a thread that may wait.
/// @param service  asked for queues. @param limits  for each request.
/// @return the failure is a sentence for the user, in the running language.
Result<FoundPrinter> findPrinter(const PrinterRef& printer, const CupsConnection& service,
                                 const CallLimits& limits);

/// The same for a PPD; asks no service.
/// @param path  as the user gave it; the ref is its absolute path.
Result<FoundPrinter> findPpdFile(const QString& path);

/// Opens the PPD that was fetched; a file of it exists only meanwhile, readable by the user alone.
/// Nothing is marked. May be called on any thread.
/// @param queue  for the sentence of the failure.
Result<ppd::File> openPpd(const QByteArray& ppd, const QString& queue);

/// A queue for people: "Shipping desk (tape)", or its name alone.
QString titleOf(const Queue& queue);

} // namespace labelcut
