// Documents: the files of a job as one PDF, and what is sent of it.
#pragma once

#include <QByteArrayList>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <vector>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/documents/paper.h"
#include "worker/protocol/message.h"

namespace labelcut {

class JobReading;

/// The files of one job as a single PDF, kept in a private folder that goes with this object.
class JobDocument {
public:
    /// Reads, checks, converts and joins `files`, by workers (document_worker.h). Each is copied
    /// first, so that nothing depends on what becomes of it afterwards.
    ///
    /// A PDF file stays what it is. PostScript is interpreted by Ghostscript. Both keep their
    /// pages' measures. Everything else is drawn on pages of `paper`, or of A4 without any.
    ///
    /// @param files  one or more paths.
    /// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
    /// @return the failure is a sentence that names the file: what copyDocument() and
    ///         DocumentWorker say; or Cancelled.
    static Result<JobDocument> prepare(const QStringList& files,
                                       const std::optional<JobPaper>& paper,
                                       const CancelFlag* cancel = nullptr);

    /// The same for those who print nothing and ask only what the pages are: the files are not
    /// joined, so that there is no pdf() of them, nothing composed, no PostScript and no digest.
    static Result<JobDocument> measure(const QStringList& files,
                                       const std::optional<JobPaper>& paper,
                                       const CancelFlag* cancel = nullptr);

    /// Path of the PDF, which lies in folder(). Its pages have the shown measures as their own.
    const QString& pdf() const { return mPdf; }
    /// How many pages it has; at least 1.
    int pages() const { return mPages; }
    /// How many of them each file has, in order.
    const std::vector<int>& pagesOfFiles() const { return mPagesOfFiles; }
    /// The measure at which each page is shown, before it is laid out. Points, each 0 …
    /// worker::kLongestSide.
    const std::vector<QSizeF>& measures() const { return mMeasures; }
    /// Whether any of it was drawn for the paper: text, pictures and drawings are.
    bool isLaidOut() const { return mIsLaidOut; }
    /// Those of the files that were damaged and could be repaired: pages may lack something.
    const QStringList& repaired() const { return mRepaired; }
    /// One for each file, to tell whether it is still what it was; see DocumentCopy.
    const QByteArrayList& digests() const { return mDigests; }
    /// Absolute path of the private folder, for whatever else the job needs.
    QString folder() const;
    /// The bare name of the first file: a job's title when the user gives none.
    const QString& name() const { return mName; }

    /// Path of a PDF of what is asked for; pdf() where nothing is to be done for it.
    /// @param composition  at least one of its pages is there.
    /// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
    /// @return the failure is a sentence; also for more pages than worker::kMostPages.
    Result<QString> composed(const Composition& composition,
                             const CancelFlag* cancel = nullptr) const;

    /// Path of the same as PostScript of any printer, `times` times: all of it, then all of it
    /// again. @param composition  at least one of its pages is there. @param times  1 or more.
    /// @param setsPageSize  whether the PostScript asks for the pages' measures as paper.
    /// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
    Result<QString> postScript(const Composition& composition, int times, bool setsPageSize,
                               const CancelFlag* cancel = nullptr) const;

private:
    enum class Use { Printing, Measuring };

    JobDocument() = default;

    static Result<JobDocument> read(const QStringList& files, const std::optional<JobPaper>& paper,
                                    Use use, const CancelFlag* cancel);

    /// Whether the document itself is what is asked for.
    bool isAlready(const Composition& composition) const;

    /// Reads one more file.
    Result<worker::Opened> add(const QString& file, Use use, JobReading& reading,
                               const CancelFlag* cancel);

    std::unique_ptr<QTemporaryDir> mFolder;
    QString mPdf;
    QString mName;
    int mPages = 0;
    std::vector<int> mPagesOfFiles;
    std::vector<QSizeF> mMeasures;
    bool mIsLaidOut = false;
    QStringList mRepaired;
    QByteArrayList mDigests;
};

} // namespace labelcut
