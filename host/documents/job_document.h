// Documents: its files as one PDF whose pages fit the paper.
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
    /// A PDF file stays what it is. PostScript is interpreted by Ghostscript and keeps its page
    /// sizes. Everything else is drawn on pages of `paper`, or of A4 without any.
    ///
    /// @param files  one or more paths.
    /// @param paper  what pages are fitted to: one that has the paper's measure stays untouched,
    /// any other is centred, turned and shrunk as it needs to be. Nothing: they keep their measure.
    /// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
    /// @return the failure is a sentence that names the file: what copyDocument() and
    ///         DocumentWorker say; or Cancelled.
    static Result<JobDocument> prepare(const QStringList& files,
                                       const std::optional<JobPaper>& paper,
                                       const CancelFlag* cancel = nullptr);

    /// Path of the PDF, which lies in folder().
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

    /// Path of a PDF of just these pages; pdf() for all. @param pages  at least one is there.
    /// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
    Result<QString> excerpt(const PageSelection& pages, const CancelFlag* cancel = nullptr) const;

    /// Path of these pages as PostScript of any printer, each `times` times: all of them, then
    /// all of them again. @param pages  at least one is there. @param times  1 or more.
    /// @param setsPageSize  whether the PostScript asks for the pages' measures as paper.
    /// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
    Result<QString> postScript(const PageSelection& pages, int times, bool setsPageSize,
                               const CancelFlag* cancel = nullptr) const;

private:
    JobDocument() = default;

    /// Reads one more file.
    Result<worker::Opened> add(const QString& file, JobReading& reading, const CancelFlag* cancel);

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
