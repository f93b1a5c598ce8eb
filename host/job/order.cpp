// Job: one order, from documents to a queue or to a file.
#include "host/job/order.h"

#include <QFileInfo>

#include <algorithm>

#include "host/core/failure.h"
#include "host/core/harmless_text.h"
#include "host/core/same_file.h"
#include "host/job/fit_problem.h"
#include "host/job/marked_paper.h"
#include "host/job/postscript_job.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// The PPD with the order's marks, opened anew: the printer that the order was made of may be used
/// meanwhile. The failure is a sentence: the file is gone, or lacks a choice by now.
Result<FoundPrinter> reopened(const Order& order) {
    Result<FoundPrinter> printer = findPpdFile(*ppdPath(order.printer));
    if (!printer)
        return printer;
    QStringList lacking;
    for (const Setting& setting : order.marks) {
        if (!ppd::markOption(printer->ppd.get(), setting.keyword.toUtf8().constData(),
                             setting.choice.toUtf8().constData()))
            lacking.append(setting.keyword + u'=' + setting.choice);
    }
    if (lacking.isEmpty())
        return printer;
    return failure(hostText("PrinterChanged").arg(order.printerTitle, lacking.join(u' ')));
}

/// What is made of the document. Copies of a whole set are the printer's, which knows from them
/// where a set ends; those of a page before the next have to stand in the document.
Composition compositionOf(const Order& order, const JobDocument& document) {
    const Amount& amount = order.amount;
    const bool isOneSet = amount.isCollated || amount.pages.countIn(document.pages()) < 2;
    Composition composition{amount.pages, amount.isReversed, isOneSet ? 1 : amount.copies,
                            order.paper, amount.fit};
    // The first set is another than those behind it.
    if (order.labelsBefore > 0 && isOneSet)
        composition.sets = amount.copies;
    composition.skipped = order.labelsBefore;
    return composition;
}

int printersCopies(const Order& order, const Composition& composition) {
    return composition.repeats > 1 || composition.sets > 1 ? 1 : order.amount.copies;
}

} // namespace

Handling handlingOf(const Amount& amount) {
    return {amount.copies, amount.isReversed, amount.isCollated, amount.fit};
}

void handle(Amount& amount, const Handling& handling) {
    amount.copies = handling.copies;
    amount.isReversed = handling.isReversed;
    amount.isCollated = handling.isCollated;
    amount.fit = handling.fit;
}

Order orderFor(const OpenedPrinter& printer, const Amount& amount) {
    Order order;
    order.printer = printer.ref();
    order.printerTitle = printer.title();
    order.amount = amount;
    order.title = jobTitle(amount.files);
    order.paper = markedPaper(printer.ppd());
    order.settings = printer.jobSettings();
    order.marks = printer.marks();
    return order;
}

QString jobTitle(const QStringList& files) {
    if (files.isEmpty())
        return hostText("Untitled");
    const QString first = harmless(QFileInfo(files.front()).fileName());
    if (files.size() == 1)
        return first;
    return hostText("TitleAndMore").arg(first, QString::number(files.size() - 1));
}

Result<JobDocument> prepareDocument(const Order& order, const CancelFlag* cancel) {
    return JobDocument::prepare(order.amount.files, order.paper, cancel);
}

std::optional<Error> reasonAgainst(const Order& order, const JobDocument& document) {
    const Amount& amount = order.amount;
    const int pages = amount.pages.countIn(document.pages());
    if (pages == 0)
        return failure(noSuchPage(amount.pages, document.pages()));
    const int repeats = compositionOf(order, document).repeats;
    constexpr auto kMost = static_cast<int>(worker::kMostPages);
    if (repeats > 1 && pages > kMost / repeats)
        return failure(
            hostText("TooManyLabels")
                .arg(QString::number(pages), QString::number(repeats), QString::number(kMost)));
    if (const auto problem = fitProblem(document.measures(), amount, order.paper))
        return Error{ErrorKind::EdgeLost, sentenceOf(*problem)};
    return std::nullopt;
}

std::optional<QString> changedFile(const Order& order, const JobDocument& document) {
    if (order.shown.isEmpty())
        return std::nullopt;
    const QByteArrayList& now = document.digests();
    const auto changed = std::ranges::mismatch(order.shown, now).in2;
    if (changed == now.end())
        return std::nullopt;
    return order.amount.files.value(changed - now.begin());
}

Result<JobToSend> jobFor(const Order& order, const JobDocument& document,
                         const CancelFlag* cancel) {
    const Composition composition = compositionOf(order, document);
    const Result<QString> pdf = document.composed(composition, cancel);
    if (!pdf)
        return pdf.error();
    JobRequest request;
    request.queue = *queueName(order.printer);
    request.title = order.title;
    request.documentFormat = QStringLiteral("application/pdf");
    request.copies = printersCopies(order, composition);
    request.isLaidOut = true;
    request.options = order.settings;
    return JobToSend{request, *pdf, choicesStillThere(request.queue, order.settings)};
}

Result<qint64> writeJob(const Order& order, const JobDocument& document, const CancelFlag* cancel) {
    const QStringList inUse =
        order.amount.files + order.inUse + QStringList{*ppdPath(order.printer)};
    if (const auto reason = reasonAgainstReplacing(order.outputPath, inUse))
        return *reason;
    const Result<FoundPrinter> printer = reopened(order);
    if (!printer)
        return printer.error();
    PostScriptJob job;
    job.ppd = printer->ppd.get();
    job.document = &document;
    job.title = order.title;
    job.user = CupsConnection::userName();
    job.composition = compositionOf(order, document);
    job.copies = printersCopies(order, job.composition);
    job.cancel = cancel;
    return writePostScript(job, order.outputPath);
}

} // namespace labelcut
