// Job: one job on its way to a queue, watched until the printer has it.
#pragma once

#include <QObject>
#include <QString>

#include <memory>

#include "host/core/background_call.h"
#include "host/job/job_report.h"
#include "host/job/submission.h"

namespace labelcut {

/// How a job ended that was sent.
enum class JobEnd {
    Printed,     ///< The printer has all of it.
    Removed,     ///< Somebody else cancelled it.
    StillQueued, ///< It waits in the queue, and watching was to end.
    Unknown,     ///< The service keeps no record of jobs that have ended, and this one has.
};

/// Sends one job after the other in the background. Every function returns at once and every signal
/// comes later, on this object's own thread. Each send() ends with exactly one of failed() and
/// done(), unless this object is destroyed: then a job that is still being sent is removed, one
/// that was sent stays.
class JobSender : public QObject {
    Q_OBJECT
public:
    struct Limits {
        int request = 10'000;   ///< Milliseconds for each request but the document.
        int document = 600'000; ///< Milliseconds for sending the document.
        int watch = 600'000;    ///< Milliseconds for watching the job; 0: it is not watched.
        int poll = 500;         ///< Milliseconds between two looks at the job.
    };

    explicit JobSender(CupsConnection service = CupsConnection(), QObject* parent = nullptr);
    ~JobSender() override;

    void setLimits(const Limits& limits) { mLimits = limits; }

    /// Begins; nothing happens while isBusy().
    void send(const JobToSend& job);
    /// Takes the job back: stops sending, or asks the service to remove it from the queue. failed()
    /// with Cancelled follows within kCancelTime, or another failure when the job could not be
    /// removed; done() when it had ended by then.
    void cancel();
    static constexpr int kCancelTime = 1'500; ///< Milliseconds.
    /// Ends the watching of a job that was sent: done() with StillQueued follows soon. Before that
    /// moment it is remembered.
    void stopWatching();

    /// Keep the job that was sent from being printed, or let it go on: the next report shows it,
    /// or refused() says why not. Nothing happens before the document was sent and after the end.
    void hold();
    void release();

    bool isBusy() const { return mBusy; }
    /// The current or last job's; 0: none was made.
    int jobId() const { return mJobId; }
    /// Whether the document has been sent, so that the job no longer needs this program.
    bool isSent() const { return mSent; }

Q_SIGNALS:
    /// @param total  bytes of the document; -1 when not known.
    void progress(qint64 sent, qint64 total);
    void jobCreated(int id);
    /// The document has arrived; the file is no longer needed.
    void documentSent();
    /// How the job is doing; only when that changes.
    void reported(const labelcut::JobReport& report);
    /// The service would not hold or release the job; it goes on as it was.
    void refused(const labelcut::Error& error);
    void failed(const labelcut::Error& error);
    void done(labelcut::JobEnd end);

private:
    struct Errand;
    enum class Wish : int;
    void wish(Wish wish);
    void fail(const Error& error);
    void finish(JobEnd end);
    void giveUpWaiting();

    CupsConnection mService;
    Limits mLimits;
    bool mBusy = false;
    bool mSent = false;
    int mJobId = 0;
    std::shared_ptr<Errand> mErrand;
    BackgroundCall mCall;
};

} // namespace labelcut
