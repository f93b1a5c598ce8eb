// The dialog: one print run, from the document to the printer or into a file, beside the window.
#include "host/dialog/print_run.h"

#include <utility>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Milliseconds; a window that stays open follows its job through a weekend.
constexpr int kWatchTime = 7 * 24 * 3'600'000;

int percentOf(qint64 part, qint64 whole) {
    return whole > 0 ? static_cast<int>(part * 100 / whole) : -1;
}

} // namespace

PrintRun::PrintRun(CupsConnection service, QObject* parent)
    : QObject(parent)
    , mSender(std::move(service))
    , mWork(this) {
    JobSender::Limits limits;
    limits.watch = kWatchTime;
    mSender.setLimits(limits);
    connect(&mSender, &JobSender::progress, this, [this](qint64 sent, qint64 total) {
        Q_EMIT progressed(hostText("SendingTo").arg(mOrder.printerTitle), percentOf(sent, total));
    });
    connect(&mSender, &JobSender::documentSent, this, [this] { mWasSent = true; });
    connect(&mSender, &JobSender::reported, this, [this](const JobReport& report) {
        if (!mIsTakenBack)
            Q_EMIT reported(report);
    });
    connect(&mSender, &JobSender::refused, this,
            [this](const Error& error) { Q_EMIT refused(error.sentence); });
    connect(&mSender, &JobSender::failed, this,
            [this](const Error& error) { fail(error.sentence); });
    connect(&mSender, &JobSender::done, this, &PrintRun::end);
}

void PrintRun::end(JobEnd end) {
    const auto say = [this](const char* key) {
        return hostText(key).arg(QString::number(mSender.jobId()), mOrder.printerTitle);
    };
    switch (end) {
    case JobEnd::Printed:
        return mIsTakenBack ? fail(say("CancelledTooLate")) : finish(say("JobPrinted"));
    case JobEnd::StillQueued:
        return finish(say("JobQueued"), false);
    case JobEnd::Unknown:
        return mIsTakenBack ? fail(say("JobEnded")) : finish(say("JobEnded"));
    case JobEnd::Removed:
        return fail(say("JobRemoved"));
    }
}

void PrintRun::start(const Order& order, bool isHeld) {
    if (mBusy)
        return;
    mBusy = true;
    mWasSent = false;
    mIsTakenBack = false;
    mIsHeld = isHeld;
    mOrder = order;
    Q_EMIT progressed(hostText("PreparingDocument"), -1);
    mWork.start([this, order](const BackgroundCall::Link& link) {
        Result<JobDocument> prepared = prepareDocument(order, &link.cancelFlag());
        if (!prepared) {
            const QString sentence = prepared.error().sentence;
            link.tell([this, sentence] { fail(sentence); });
            return;
        }
        auto document = std::make_shared<JobDocument>(std::move(*prepared));
        link.tell([this, document] { deliver(document); });
    });
}

void PrintRun::deliver(const std::shared_ptr<JobDocument>& document) {
    if (const auto changed = changedFile(mOrder, *document))
        refuseChanged(*changed, *document);
    else if (const auto reason = reasonAgainst(mOrder, *document))
        fail(reason->sentence);
    else if (queueName(mOrder.printer))
        send(document);
    else
        write(document);
}

void PrintRun::refuseChanged(const QString& file, const JobDocument& document) {
    Q_EMIT documentChanged(document.digests());
    fail(hostText("DocumentChanged").arg(file));
}

void PrintRun::send(const std::shared_ptr<JobDocument>& document) {
    mDocument = document;
    mWork.start(
        [this, document, order = mOrder, isHeld = mIsHeld](const BackgroundCall::Link& link) {
            Result<JobToSend> job = jobFor(order, *document, &link.cancelFlag());
            if (!job) {
                link.tell([this, sentence = job.error().sentence] { fail(sentence); });
                return;
            }
            job->request.isHeld = isHeld;
            link.tell([this, job = *job] { submit(job); });
        });
}

void PrintRun::submit(const JobToSend& job) {
    // Whether the printer still has what was chosen is the first thing the sender looks at.
    Q_EMIT progressed(hostText("FetchingPpd").arg(*queueName(mOrder.printer)), -1);
    mSender.send(job);
}

void PrintRun::write(const std::shared_ptr<JobDocument>& document) {
    Q_EMIT progressed(hostText("WritingTo").arg(mOrder.outputPath), -1);
    mWork.start([this, document, order = mOrder](const BackgroundCall::Link& link) {
        const Result<qint64> written = writeJob(order, *document, &link.cancelFlag());
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
        mIsTakenBack = true;
        if (mWasSent) {
            const QString id = QString::number(mSender.jobId());
            Q_EMIT progressed(hostText("CancellingJob").arg(id), -1);
        }
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

void PrintRun::finish(const QString& sentence, bool isOver) {
    mBusy = false;
    mDocument.reset();
    Q_EMIT finished(sentence, isOver);
}

} // namespace labelcut
