// Printers: where they come from.
#include "host/printers/printer_source.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/core/harmless_text.h"
#include "host/core/regular_file.h"
#include "host/settings/ppd_view.h"
#include "host/settings/saved_options.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// libcups' words, and where it stopped reading.
QString reasonOf(const ppd::OpenError& error) {
    return error.line == 0
               ? error.reason
               : hostText("ReasonInLine").arg(error.reason, QString::number(error.line));
}

/// Why the file at `path` could not even be opened.
QString sentenceFor(const OpenAttempt& attempt, const QString& path) {
    if (attempt.trouble == FileTrouble::Missing)
        return hostText("PpdDoesNotExist").arg(path);
    if (attempt.trouble == FileTrouble::Refused)
        return hostText("PpdNotReadable").arg(path, attempt.reason);
    return hostText("PpdIsNoFile").arg(path);
}

/// Only the queue's own options count, not those of its variants ("queue/instance").
void addSavedOptions(FoundPrinter& printer, const QString& queue) {
    const SavedOptions saved = readSavedOptions();
    const SettingMatch match =
        startingPoint(printer.ppd.get(), saved.optionsOf({queue, QString()})).match;
    printer.saved = match.applicable;
    printer.notes << saved.problems << describe(printer.ppd.get(), match.missing);
}

/// @param queue  as the service describes it. @param ppd  its PPD.
Result<FoundPrinter> foundQueue(const Queue& queue, const QByteArray& ppd) {
    Result<ppd::File> opened = openPpd(ppd, queue.name);
    if (!opened)
        return opened.error();
    FoundPrinter printer;
    printer.ref = QueueRef{queue.name};
    printer.title = titleOf(queue);
    printer.queue = queue;
    printer.ppd = std::move(*opened);
    ppd::markDefaults(printer.ppd.get());
    addSavedOptions(printer, queue.name);
    return printer;
}

Result<FoundPrinter> findQueue(const QString& name, const CupsConnection& service,
                               const CallLimits& limits) {
    const Result<QueueDetails> details = service.queueAttributes(name, limits);
    if (!details)
        return details.error();
    const Result<QByteArray> ppd = service.fetchPpd(name, limits);
    if (!ppd)
        return ppd.error();
    Queue queue = details->queue;
    queue.name = name;
    return foundQueue(queue, *ppd);
}

} // namespace

Result<FoundPrinter> findPrinter(const PrinterRef& printer, const CupsConnection& service,
                                 const CallLimits& limits) {
    if (const QString* queue = queueName(printer))
        return findQueue(*queue, service, limits);
    return findPpdFile(*ppdPath(printer));
}

Result<FoundPrinter> findPpdFile(const QString& path) {
    OpenAttempt attempt = tryRegularFile(path);
    if (attempt.trouble != FileTrouble::None)
        return failure(sentenceFor(attempt, path));
    ppd::OpenError error;
    FoundPrinter printer;
    printer.ppd = ppd::open(std::move(attempt.file), &error);
    if (!printer.ppd)
        return failure(hostText("NoUsablePpd").arg(path, reasonOf(error)));
    const PpdView view(printer.ppd.get());
    // Some damage, such as a quote that never ends, swallows the file without libcups minding.
    if (!view.hasContent())
        return failure(hostText("PpdWithoutContent").arg(path));
    ppd::markDefaults(printer.ppd.get());
    printer.ref = PpdFileRef{absoluteName(path)};
    printer.title =
        view.name().isEmpty() ? harmless(QFileInfo(path).completeBaseName()) : view.name();
    return printer;
}

Result<ppd::File> openPpd(const QByteArray& ppd, const QString& queue) {
    const auto unusable = [&](const QString& reason) {
        return Error{ErrorKind::Other, hostText("PpdUnusable").arg(queue, reason)};
    };
    QTemporaryFile file;
    if (!file.open() || file.write(ppd) != ppd.size() || !file.flush())
        return unusable(file.errorString());
    ppd::OpenError error;
    ppd::File opened = ppd::openFile(file.fileName(), &error);
    if (opened)
        return opened;
    return unusable(reasonOf(error));
}

QString titleOf(const Queue& queue) {
    return queue.info.isEmpty() || queue.info == queue.name
               ? queue.name
               : QStringLiteral("%1 (%2)").arg(queue.info, queue.name);
}

} // namespace labelcut
