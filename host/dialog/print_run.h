// The dialog: one print run, from the document to the printer or into a file, beside the window.
#pragma once

#include <QObject>

#include <memory>

#include "host/core/background_call.h"
#include "host/job/job_sender.h"
#include "host/job/order.h"

namespace labelcut {

/// Each start() ends with exactly one of failed() and finished(); until then nothing else starts.
class PrintRun : public QObject {
    Q_OBJECT
public:
    explicit PrintRun(CupsConnection service = CupsConnection(), QObject* parent = nullptr);

    /// @param isHeld  whether the job waits in its queue until somebody releases it.
    void start(const Order& order, bool isHeld = false);
    /// Takes the job back, also one that was sent: the end says what came of it.
    void cancel();
    bool isBusy() const { return mBusy; }
    /// Whether the job of this run, or of the last, lies with the print service and needs this
    /// program no more.
    bool wasSent() const { return mWasSent; }
    bool isSent() const { return mBusy && mWasSent; }
    /// Leaves a job that was sent to itself.
    void stopWatching() { mSender.stopWatching(); }
    /// See JobSender.
    void hold() { mSender.hold(); }
    void release() { mSender.release(); }

Q_SIGNALS:
    /// What is being done, for the user, and how much of it: 0 to 100, or -1 for unknown.
    void progressed(const QString& sentence, int percent);
    /// How the job is doing that was sent.
    void reported(const labelcut::JobReport& report);
    /// What could not be done to the job, which goes on.
    void refused(const QString& sentence);
    void failed(const QString& sentence);
    /// @param isOver  whether the job has come to its end; otherwise it waits in its queue.
    void finished(const QString& sentence, bool isOver);
    /// A file is no longer what was shown; failed() follows. This is what they are now.
    void documentChanged(const QByteArrayList& digests);

private:
    void deliver(const std::shared_ptr<JobDocument>& document);
    void refuseChanged(const QString& file, const JobDocument& document);
    void send(const std::shared_ptr<JobDocument>& document);
    void submit(const JobToSend& job);
    void write(const std::shared_ptr<JobDocument>& document);
    void end(JobEnd end);
    void fail(const QString& sentence);
    void finish(const QString& sentence, bool isOver = true);

    Order mOrder;
    bool mIsHeld = false;
    bool mBusy = false;
    bool mWasSent = false;
    bool mIsTakenBack = false;
    std::shared_ptr<JobDocument> mDocument;
    JobSender mSender;
    BackgroundCall mWork;
};

} // namespace labelcut
