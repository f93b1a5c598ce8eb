// Job: one order, from documents to a queue or to a file.
//
// Whoever prints, the window or the command line, makes an Order of an opened printer and hands it
// to the functions below. They differ only in how they ask and in where they wait.
#pragma once

#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <optional>

#include "host/core/handling.h"
#include "host/documents/job_document.h"
#include "host/documents/paper.h"
#include "host/job/submission.h"
#include "host/printers/opened_printer.h"
#include "host/printers/printer_ref.h"
#include "host/settings/setting.h"
#include "worker/protocol/page_fit.h"

namespace labelcut {

/// What is printed, and how often.
struct Amount {
    /// One or more documents, as the user names them.
    QStringList files;
    /// 1 or more.
    int copies = 1;
    /// Counted through all files.
    PageSelection pages;
    /// The last page first.
    bool isReversed = false;
    /// A whole set, then the next; otherwise every copy of a page, then the next page.
    bool isCollated = true;
    worker::Fit fit = worker::Fit::Unchanged;

    bool operator==(const Amount&) const = default;
};

Handling handlingOf(const Amount& amount);
void handle(Amount& amount, const Handling& handling);

/// Everything that printing takes; nothing of it is borrowed, so that it can be carried out on any
/// thread, whatever becomes of the printer that it was made of.
struct Order {
    PrinterRef printer;
    QString printerTitle;
    Amount amount;
    /// So many of its labels, from the first on, were printed before; fewer than there are.
    int labelsBefore = 0;
    /// What the files were when the user was shown them, see JobDocument::digests(); empty when
    /// they have not been looked at.
    QByteArrayList shown;
    /// The job's title; plain text.
    QString title;
    /// What pages are laid out on; nothing: they keep their measure.
    std::optional<JobPaper> paper;
    /// What the job says of its choices.
    Settings settings;
    /// Everything that is marked, for a file of PostScript.
    Settings marks;
    /// Where the file goes; only for a printer without a queue.
    QString outputPath;
    /// What it must not replace, besides the documents and the PPD.
    QStringList inUse;
};

/// The order for what is chosen on the printer right now.
Order orderFor(const OpenedPrinter& printer, const Amount& amount);

/// "labels.pdf", or "labels.pdf and 2 more"; a word of the running language without any file.
QString jobTitle(const QStringList& files);

/// Reads, converts and joins the order's documents. Blocks.
/// @param cancel  borrowed for the call; may be null. @return what JobDocument::prepare() says.
Result<JobDocument> prepareDocument(const Order& order, const CancelFlag* cancel);

/// The first of the files that is not what the user was shown; nothing when all are, or none has
/// been looked at.
std::optional<QString> changedFile(const Order& order, const JobDocument& document);

/// Why nothing of the document is printed: the pages ordered are not there, are repeated too often,
/// or lose an edge on the label, see fitProblem(); the kind is then EdgeLost.
std::optional<Error> reasonAgainst(const Order& order, const JobDocument& document);

/// For a printer with a queue: the job as submit() takes it. Makes what is sent; blocks.
/// @param document  outlives the job. @param cancel  borrowed for the call; may be null.
/// @return the failure is what JobDocument::composed() says.
Result<JobToSend> jobFor(const Order& order, const JobDocument& document, const CancelFlag* cancel);

/// For a printer without: writes the job to `outputPath`, see writePostScript(). Blocks.
/// @return bytes written.
Result<qint64> writeJob(const Order& order, const JobDocument& document, const CancelFlag* cancel);

} // namespace labelcut
