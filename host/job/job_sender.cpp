// Job: one job on its way to a queue.
#include "host/job/job_sender.h"

#include <QElapsedTimer>
#include <QTimer>

#include <atomic>

#include "host/core/failure.h"
#include "host/service/print_errors.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Milliseconds between two reports of progress, so that they do not crowd the event loop.
constexpr int kProgressInterval = 50;
/// Milliseconds for the request that removes a job.
constexpr int kRemoveTime = 1'000;
/// Milliseconds for a last look at a job that could not be removed. Within JobSender::kCancelTime.
constexpr int kLastLookTime = 300;
/// Milliseconds after which a wish to stop is seen.
constexpr int kNap = 50;

Error gaveUp(const JobStatus& job) {
    const QString id = QString::number(job.id);
    return {ErrorKind::Other, job.message.isEmpty()
                                  ? hostText("JobGivenUp").arg(id)
                                  : hostText("JobGivenUpBecause").arg(id, job.message)};
}

std::optional<JobEnd> endOf(JobState state) {
    if (state == JobState::Completed)
        return JobEnd::Printed;
    return state == JobState::Canceled ? std::optional(JobEnd::Removed) : std::nullopt;
}

} // namespace

/// What the user wants of a job that was sent.
enum class JobSender::Wish : int { None, Hold, Release };

/// One send(), run on a thread of its own from beginning to end. The sender is touched by reports
/// only, which run on its thread and not at all once it is gone.
struct JobSender::Errand {
    JobSender* sender = nullptr;
    CupsConnection service;
    Limits limits;
    JobToSend job;
    /// The user wants the job back: a cancelled call alone does not say so after the document.
    std::atomic<bool> isTakenBack = false;
    std::atomic<bool> isWatchingOver = false;
    /// The latest; fulfilled between two looks at the job.
    std::atomic<Wish> wish = Wish::None;

    void run(const BackgroundCall::Link& link);

private:
    CallLimits within(const BackgroundCall::Link& link, int milliseconds) const {
        return {milliseconds, &link.cancelFlag()};
    }
    void fail(const BackgroundCall::Link& link, const Error& error) const {
        link.tell([to = sender, error] { to->fail(error); });
    }
    void finish(const BackgroundCall::Link& link, JobEnd end) const {
        link.tell([to = sender, end] { to->finish(end); });
    }
    SubmissionReports reportsTo(const BackgroundCall::Link& link) const;
    void watch(const BackgroundCall::Link& link, int id);
    /// Looks at the job once. @return whether that was the last time.
    bool look(const BackgroundCall::Link& link, int id);
    void fulfil(const BackgroundCall::Link& link, int id, Wish wanted) const;
    void say(const BackgroundCall::Link& link, const JobReport& report);
    JobReport reportFor(const BackgroundCall::Link& link, const JobStatus& status) const;
    /// The failure with what has become of the job in front of it. @param timeout  milliseconds
    /// that the request was given.
    Error withFate(const Error& failure, JobFate fate, int id, int timeout) const;
    void takeBack(const BackgroundCall::Link& link, int id);
    bool sleep(const BackgroundCall::Link& link) const;

    std::optional<JobReport> mSaid;
};

void JobSender::Errand::run(const BackgroundCall::Link& link) {
    const Result<int> id = submit(service, job, {limits.request, limits.document},
                                  &link.cancelFlag(), reportsTo(link));
    if (!id)
        return fail(link, id.error());
    link.tell([to = sender] {
        to->mSent = true;
        Q_EMIT to->documentSent();
    });
    watch(link, *id);
}

SubmissionReports JobSender::Errand::reportsTo(const BackgroundCall::Link& link) const {
    const auto created = [link, to = sender](int number) {
        link.tell([to, number] {
            to->mJobId = number;
            Q_EMIT to->jobCreated(number);
        });
    };
    auto sinceReport = std::make_shared<QElapsedTimer>();
    const auto progress = [link, to = sender, sinceReport](qint64 sent, qint64 total) {
        if (sinceReport->isValid() && sinceReport->elapsed() < kProgressInterval && sent != total)
            return;
        sinceReport->start();
        link.tell([to, sent, total] { Q_EMIT to->progress(sent, total); });
    };
    return {created, progress};
}

void JobSender::Errand::watch(const BackgroundCall::Link& link, int id) {
    const Deadline end({limits.watch, nullptr});
    while (!link.isCancelled() && !isWatchingOver && !end.isOver()) {
        fulfil(link, id, wish.exchange(Wish::None));
        if (look(link, id))
            return;
        sleep(link);
    }
    if (isTakenBack)
        takeBack(link, id);
    else
        finish(link, JobEnd::StillQueued);
}

bool JobSender::Errand::look(const BackgroundCall::Link& link, int id) {
    const Result<JobStatus> status = service.jobAttributes(id, within(link, limits.request));
    if (!status && status.error().kind == ErrorKind::NoSuchJob) {
        finish(link, JobEnd::Unknown);
        return true;
    }
    if (!status) { // the job does not need the connection; it may come back
        JobReport unseen;
        unseen.trouble = withFate(status.error(), JobFate::Sent, id, limits.request).sentence;
        say(link, unseen);
        return false;
    }
    if (status->state == JobState::Aborted) {
        fail(link, gaveUp(*status));
        return true;
    }
    say(link, reportFor(link, *status));
    const std::optional<JobEnd> end = endOf(status->state);
    if (end)
        finish(link, *end);
    return end.has_value();
}

void JobSender::Errand::fulfil(const BackgroundCall::Link& link, int id, Wish wanted) const {
    if (wanted == Wish::None)
        return;
    const CallLimits limit = within(link, limits.request);
    const auto done = wanted == Wish::Hold ? service.holdJob(id, job.request.user, limit)
                                           : service.releaseJob(id, job.request.user, limit);
    if (!done && !link.isCancelled())
        link.tell([to = sender, error = done.error()] { Q_EMIT to->refused(error); });
}

void JobSender::Errand::say(const BackgroundCall::Link& link, const JobReport& report) {
    if (mSaid == report || link.isCancelled())
        return;
    mSaid = report;
    link.tell([to = sender, report] { Q_EMIT to->reported(report); });
}

JobReport JobSender::Errand::reportFor(const BackgroundCall::Link& link,
                                       const JobStatus& status) const {
    if (endOf(status.state))
        return reportOn(status, nullptr);
    const auto queue = service.queueAttributes(job.request.queue, within(link, limits.request));
    return reportOn(status, queue ? &*queue : nullptr);
}

void JobSender::Errand::takeBack(const BackgroundCall::Link& link, int id) {
    const auto removed = service.cancelJob(id, job.request.user, {kRemoveTime, nullptr});
    // Perhaps it came to its end before, or to its beginning.
    const auto status = service.jobAttributes(id, {kLastLookTime, nullptr});
    if (!removed) {
        const std::optional<JobEnd> end = status ? endOf(status->state) : std::nullopt;
        return end ? finish(link, *end)
                   : fail(link, withFate(removed.error(), JobFate::Unknown, id, kRemoveTime));
    }
    const bool mayHaveBegun = !status || status->mayHaveBegun;
    fail(link, withFate(cancelled(), mayHaveBegun ? JobFate::Begun : JobFate::Gone, id, 0));
}

Error JobSender::Errand::withFate(const Error& failure, JobFate fate, int id, int timeout) const {
    RequestSubject subject;
    subject.service = service.address().text();
    subject.timeout = timeout;
    subject.queue = job.request.queue;
    subject.job = id;
    return printerrors::withFate(failure, fate, subject);
}

bool JobSender::Errand::sleep(const BackgroundCall::Link& link) const {
    const Deadline pause({limits.poll, nullptr});
    bool goOn = true;
    while (goOn && !pause.isOver() && !isWatchingOver && wish == Wish::None)
        goOn = link.sleep(std::min(kNap, pause.remaining()));
    return goOn;
}

JobSender::JobSender(CupsConnection service, QObject* parent)
    : QObject(parent)
    , mService(std::move(service))
    , mCall(this) {}

JobSender::~JobSender() = default;

void JobSender::send(const JobToSend& job) {
    if (mBusy)
        return;
    mBusy = true;
    mSent = false;
    mJobId = 0;
    mErrand = std::make_shared<Errand>();
    mErrand->sender = this;
    mErrand->service = mService;
    mErrand->limits = mLimits;
    mErrand->job = job;
    mCall.start([errand = mErrand](const BackgroundCall::Link& link) { errand->run(link); });
}

void JobSender::cancel() {
    if (!mBusy || mErrand->isTakenBack)
        return;
    mErrand->isTakenBack = true;
    mCall.cancel();
    QTimer::singleShot(kCancelTime, this, [this, errand = mErrand] {
        if (mBusy && mErrand == errand)
            giveUpWaiting();
    });
}

void JobSender::stopWatching() {
    if (mErrand)
        mErrand->isWatchingOver = true;
}

void JobSender::hold() {
    wish(Wish::Hold);
}

void JobSender::release() {
    wish(Wish::Release);
}

void JobSender::wish(Wish wish) {
    if (mBusy && mSent)
        mErrand->wish = wish;
}

void JobSender::fail(const Error& error) {
    mBusy = false;
    Q_EMIT failed(error);
}

void JobSender::finish(JobEnd end) {
    mBusy = false;
    Q_EMIT done(end);
}

/// The service is slow to answer; what is left to do is done without anybody waiting for it.
void JobSender::giveUpWaiting() {
    mCall.drop();
    fail({ErrorKind::Cancelled, hostText("CancelUnconfirmed")});
}

} // namespace labelcut
