// The dialog: one print run, from the document to the printer or into a file, beside the window.
#pragma once

#include <QObject>

#include <memory>

#include "host/core/background_call.h"
#include "host/dialog/job_model.h"
#include "host/documents/job_document.h"
#include "host/job/job_sender.h"

namespace labelcut {

/// Everything a run needs, taken from the model when the user says Print.
struct PrintOrder {
    PrinterChoice printer;
    QString ppdFile;
    QStringList files;
    /// What the files were when the user was shown them, see JobDocument::digests(); empty when
    /// they have not been looked at.
    QByteArrayList shown;
    QString title;
    int copies = 1;
    PageRange pages;
    std::optional<JobPaper> paper;
    /// What the job carries.
    std::vector<OptionChoice> choices;
    /// Everything that is marked, for PostScript made without a print service.
    Marks marks;
    /// Where to write; only for a printer that is known by its PPD only.
    QString outputPath;

    static PrintOrder from(const JobModel& model);
};

/// Each start() ends with exactly one of failed() and finished(); until then nothing else starts.
class PrintRun : public QObject {
    Q_OBJECT
public:
    explicit PrintRun(CupsConnection service = CupsConnection(), QObject* parent = nullptr);

    void start(const PrintOrder& order);
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
    void documentChanged(int pages, const QByteArrayList& digests);

private:
    void refuseChanged(const JobDocument& document);
    void send(const std::shared_ptr<JobDocument>& document);
    void write(const std::shared_ptr<JobDocument>& document);
    void end(JobEnd end);
    void fail(const QString& sentence);
    void finish(const QString& sentence);

    PrintOrder mOrder;
    bool mBusy = false;
    std::shared_ptr<JobDocument> mDocument;
    JobSender mSender;
    BackgroundCall mWork;
};

} // namespace labelcut
