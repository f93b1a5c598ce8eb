// Documents: the files of a job on their way through the workers.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/documents/document_worker.h"
#include "host/documents/paper.h"
#include "worker/protocol/message.h"

namespace labelcut {

/// Reads the files of one job with one worker for PDF, which keeps them until they are joined, and
/// others for what must become PDF first.
class JobReading {
public:
    /// @param folder  private to the job; what is made goes there.
    /// @param paper  what drawings are laid out on; nothing: A4.
    /// @param cancel  borrowed as long as this object; may be null.
    /// @return the failure is a sentence: the worker cannot be started.
    static Result<JobReading> start(const QString& folder, const std::optional<JobPaper>& paper,
                                    const CancelFlag* cancel);

    /// A file that was read.
    struct File {
        /// Of its PDF; `path` itself for one.
        QString pdf;
        worker::Opened opened;
        /// It was drawn for the paper.
        bool isDrawn = false;
    };
    /// @param path  of the copy. @param about  what the user calls the file.
    Result<File> read(const QString& path, const QString& about);

    /// Writes what is asked for of all files to the new file `target`.
    Result<Done> join(const Composition& composition, const QString& target);

    /// The measure at which each page of all files is shown, in their order. Points, each 0 …
    /// worker::kLongestSide. @param pages  how many there are. @param scratch  path of a new file.
    Result<std::vector<QSizeF>> measures(int pages, const QString& scratch);

private:
    JobReading(DocumentWorker worker, QString folder, const std::optional<JobPaper>& paper,
               const CancelFlag* cancel);

    /// What the worker writes to the new file `target`.
    Result<Done> write(const worker::Request& request, const QString& target);
    Result<worker::Answer> open(const QString& path, const QString& about);
    Result<QString> converted(const QString& path, const QString& about, worker::DocumentKind kind);
    Result<QString> drawn(const QString& path, const QString& about, worker::DocumentKind kind);

    DocumentWorker mWorker;
    QString mFolder;
    std::optional<JobPaper> mPaper;
    const CancelFlag* mCancel;
    /// What the user calls the files that were read, in order.
    QStringList mNames;
};

/// Has Ghostscript interpret the file at `path`. @param folder  private to the job.
/// @param about  what the user calls the file. @param cancel  borrowed for the call; may be null.
/// @return path of what it made.
Result<QString> interpreted(const QString& path, const QString& about,
                            const worker::Interpret& request, const QString& folder,
                            const CancelFlag* cancel);

} // namespace labelcut
