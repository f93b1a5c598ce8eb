// The dialog: one print run, from the document to the printer or into a file, beside the window.
#include "host/dialog/print_run.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <utility>

#include "host/core/atomic_file.h"
#include "host/job/cups_job.h"
#include "host/job/marked_paper.h"
#include "host/job/postscript_job.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Bytes that are copied at a time.
constexpr qint64 kPiece = 1 << 16;

/// The PPD with the order's marks, opened anew for a thread of its own. The failure is a sentence:
/// the file is gone, or lacks a choice by now.
Result<ppd::File> openMarked(const PrintOrder& order) {
    ppd::OpenError error;
    ppd::File file = ppd::openFile(order.ppdFile, &error);
    if (!file)
        return Error{ErrorKind::Other,
                     hostText("PpdUnreadable")
                         .arg(order.ppdFile, error.reason, QString::number(error.line))};
    ppd::markDefaults(file.get());
    QStringList lacking;
    for (auto mark = order.marks.cbegin(); mark != order.marks.cend(); ++mark) {
        if (!ppd::markOption(file.get(), mark.key().toUtf8().constData(),
                             mark.value().toUtf8().constData()))
            lacking.append(mark.key() + u'=' + mark.value());
    }
    if (lacking.isEmpty())
        return file;
    return Error{ErrorKind::Other,
                 hostText("PrinterChanged").arg(order.printer.title, lacking.join(u' '))};
}

Result<qint64> copyWhole(const QString& from, const QString& to) {
    return writeWhole(to, [&](FileSink& sink) -> std::optional<QString> {
        QFile source(from);
        if (!source.open(QIODevice::ReadOnly))
            return source.errorString();
        while (!source.atEnd())
            sink.write(source.read(kPiece));
        return std::nullopt;
    });
}

/// Makes the order's PostScript and puts it into its place, unless it was taken back meanwhile.
Result<Done> writeFile(const PrintOrder& order, const JobDocument& document,
                       const BackgroundCall::Link& link) {
    const Result<ppd::File> file = openMarked(order);
    if (!file)
        return file.error();
    PostScriptJob job;
    job.ppd = file->get();
    job.document = &document;
    job.title = order.title;
    job.copies = order.copies;
    job.user = CupsConnection::userName();
    job.pages = order.pages;
    job.cancel = &link.cancelFlag();
    const QString made = QDir(document.folder()).filePath(QStringLiteral("job.ps"));
    Result<qint64> written = writePostScript(job, made);
    if (written && !link.isCancelled())
        written = copyWhole(made, order.outputPath);
    if (!written)
        return written.error();
    return Done();
}

JobToSend jobFor(const PrintOrder& order, const JobDocument& document) {
    CupsJob job;
    job.queue = order.printer.queue;
    job.document = &document;
    job.title = order.title;
    job.copies = order.copies;
    job.pages = order.pages;
    for (const OptionChoice& choice : order.choices)
        job.settings.push_back({choice.key, choice.choice});
    return {requestFor(job), document.pdf(), choicesStillThere(job.queue, job.settings)};
}

int percentOf(qint64 part, qint64 whole) {
    return whole > 0 ? static_cast<int>(part * 100 / whole) : -1;
}

} // namespace

PrintOrder PrintOrder::from(const JobModel& model) {
    PrintOrder order;
    order.printer = model.printer();
    order.ppdFile = model.ppdFile();
    order.files = model.files();
    order.title = model.title();
    order.copies = model.copies();
    order.pages = model.pages();
    order.paper = markedPaper(model.ppd());
    order.choices = model.jobChoices();
    order.marks = model.marks();
    return order;
}

PrintRun::PrintRun(CupsConnection service, QObject* parent)
    : QObject(parent)
    , mSender(std::move(service))
    , mWork(this) {
    connect(&mSender, &JobSender::progress, this, [this](qint64 sent, qint64 total) {
        Q_EMIT progressed(hostText("SendingTo").arg(mOrder.printer.title), percentOf(sent, total));
    });
    connect(&mSender, &JobSender::stateChanged, this,
            [this](const QString& sentences) { Q_EMIT progressed(sentences, -1); });
    connect(&mSender, &JobSender::failed, this,
            [this](const Error& error) { fail(error.sentence); });
    connect(&mSender, &JobSender::done, this, &PrintRun::end);
}

void PrintRun::end(JobEnd end) {
    const auto say = [this](const char* key) {
        return hostText(key).arg(QString::number(mSender.jobId()), mOrder.printer.title);
    };
    switch (end) {
    case JobEnd::Printed:
        return finish(say("JobPrinted"));
    case JobEnd::StillQueued:
        return finish(say("JobQueued"));
    case JobEnd::Unknown:
        return finish(say("JobEnded"));
    case JobEnd::Removed:
        return fail(say("JobRemoved"));
    }
}

void PrintRun::start(const PrintOrder& order) {
    if (mBusy)
        return;
    mBusy = true;
    mOrder = order;
    Q_EMIT progressed(hostText("PreparingDocument"), -1);
    mWork.start([this, order](const BackgroundCall::Link& link) {
        Result<JobDocument> prepared =
            JobDocument::prepare(order.files, order.paper, &link.cancelFlag());
        if (!prepared) {
            const QString sentence = prepared.error().sentence;
            link.tell([this, sentence] { fail(sentence); });
            return;
        }
        auto document = std::make_shared<JobDocument>(std::move(*prepared));
        link.tell([this, document] {
            if (!mOrder.shown.isEmpty() && mOrder.shown != document->digests())
                refuseChanged(*document);
            else if (mOrder.printer.isQueue())
                send(document);
            else
                write(document);
        });
    });
}

void PrintRun::refuseChanged(const JobDocument& document) {
    const QByteArrayList& now = document.digests();
    const auto changed = std::ranges::mismatch(mOrder.shown, now).in2 - now.begin();
    Q_EMIT documentChanged(document.pages(), now);
    fail(hostText("DocumentChanged").arg(mOrder.files.value(changed)));
}

void PrintRun::send(const std::shared_ptr<JobDocument>& document) {
    mDocument = document;
    if (document->pagesIn(mOrder.pages) == 0) {
        fail(hostText("NoSuchPages")
                 .arg(toString(mOrder.pages), QString::number(document->pages())));
        return;
    }
    // Whether the printer still has what was chosen is the first thing the sender looks at.
    Q_EMIT progressed(hostText("FetchingPpd").arg(mOrder.printer.queue), -1);
    mSender.send(jobFor(mOrder, *document));
}

void PrintRun::write(const std::shared_ptr<JobDocument>& document) {
    Q_EMIT progressed(hostText("WritingTo").arg(mOrder.outputPath), -1);
    mWork.start([this, document, order = mOrder](const BackgroundCall::Link& link) {
        const Result<Done> written = writeFile(order, *document, link);
        if (written)
            link.tell([this, path = order.outputPath] { finish(hostText("WrittenTo").arg(path)); });
        else
            link.tell([this, sentence = written.error().sentence] { fail(sentence); });
    });
}

void PrintRun::cancel() {
    if (!mBusy)
        return;
    if (mSender.isBusy()) {
        mSender.cancel();
        return;
    }
    mWork.drop();
    fail(hostText("PrintingCancelled"));
}

void PrintRun::fail(const QString& sentence) {
    mBusy = false;
    mDocument.reset();
    Q_EMIT failed(sentence);
}

void PrintRun::finish(const QString& sentence) {
    mBusy = false;
    mDocument.reset();
    Q_EMIT finished(sentence);
}

} // namespace labelcut
