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

    void start(const Order& order);
    /// Takes the job back, or stops waiting for a job that was sent.
    void cancel();
    bool isBusy() const { return mBusy; }
    /// Whether the job lies with the print service and needs this program no more.
    bool isSent() const { return mBusy && mSender.isSent(); }
    void stopWatching() { mSender.stopWatching(); }

Q_SIGNALS:
    /// What is being done, for the user, and how much of it: 0 to 100, or -1 for unknown.
    void progressed(const QString& sentence, int percent);
    void failed(const QString& sentence);
    void finished(const QString& sentence);
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
    void finish(const QString& sentence);

    Order mOrder;
    bool mBusy = false;
    std::shared_ptr<JobDocument> mDocument;
    JobSender mSender;
    BackgroundCall mWork;
};

} // namespace labelcut
