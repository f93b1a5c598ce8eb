// Documents: the files of a job as one PDF, and what is sent of it.
#include "host/documents/job_document.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

#include "host/core/failure.h"
#include "host/documents/documents.h"
#include "host/documents/job_reading.h"
#include "host/texts/host_text.h"

namespace labelcut {

Result<JobDocument> JobDocument::prepare(const QStringList& files,
                                         const std::optional<JobPaper>& paper,
                                         const CancelFlag* cancel) {
    return read(files, paper, Use::Printing, cancel);
}

Result<JobDocument> JobDocument::measure(const QStringList& files,
                                         const std::optional<JobPaper>& paper,
                                         const CancelFlag* cancel) {
    return read(files, paper, Use::Measuring, cancel);
}

Result<JobDocument> JobDocument::read(const QStringList& files,
                                      const std::optional<JobPaper>& paper, Use use,
                                      const CancelFlag* cancel) {
    JobDocument document;
    // Without a place for it the folder would be made in the root.
    if (QDir::tempPath().isEmpty())
        return failure(hostText("NoTemporaryFolder").arg(qEnvironmentVariable("TMPDIR")));
    document.mFolder = std::make_unique<QTemporaryDir>();
    if (!document.mFolder->isValid())
        return failure(hostText("NoTemporaryFolder").arg(document.mFolder->errorString()));
    if (files.isEmpty())
        return failure(hostText("NoFileNamed"));
    document.mName = QFileInfo(files.front()).fileName();

    Result<JobReading> reading = JobReading::start(document.folder(), paper, cancel);
    if (!reading)
        return reading.error();
    bool canStay = files.size() == 1;
    for (const QString& file : files) {
        const Result<worker::Opened> opened = document.add(file, use, *reading, cancel);
        if (!opened)
            return opened.error();
        canStay = canStay && opened->isPlain && !opened->isEncrypted && !opened->isRepaired;
    }
    auto measures = reading->measures(document.mPages,
                                      QDir(document.folder()).filePath(QStringLiteral("measures")));
    if (!measures)
        return measures.error();
    document.mMeasures = std::move(*measures);
    if (canStay || use == Use::Measuring)
        return document;
    document.mPdf = QDir(document.folder()).filePath(QStringLiteral("job.pdf"));
    const Result<Done> joined = reading->join({}, document.mPdf);
    if (!joined)
        return joined.error();
    return document;
}

Result<worker::Opened> JobDocument::add(const QString& file, Use use, JobReading& reading,
                                        const CancelFlag* cancel) {
    const QString number = QString::number(mDigests.size());
    const auto copy =
        copyDocument(file, QDir(folder()).filePath(QStringLiteral("copy") + number), cancel,
                     use == Use::Printing ? CopyDigest::Taken : CopyDigest::Unneeded);
    if (!copy)
        return copy.error();
    mDigests << copy->digest;
    const Result<JobReading::File> read = reading.read(copy->path, file);
    if (!read)
        return read.error();
    mPdf = read->pdf;
    mIsLaidOut = mIsLaidOut || read->isDrawn;
    mPagesOfFiles.push_back(static_cast<int>(read->opened.pages));
    mPages += mPagesOfFiles.back();
    if (read->opened.isRepaired)
        mRepaired << file;
    return read->opened;
}

QString JobDocument::folder() const {
    return QFileInfo(mFolder->path()).absoluteFilePath();
}

bool JobDocument::isAlready(const Composition& composition) const {
    if (composition.pages.countIn(mPages) < mPages || composition.repeats > 1 ||
        composition.sets > 1 || composition.skipped > 0 || (composition.isReversed && mPages > 1))
        return false;
    return !composition.paper || std::ranges::all_of(mMeasures, [&](const QSizeF& measure) {
        return placedOn(*composition.paper, measure, composition.fit).isUntouched;
    });
}

Result<QString> JobDocument::composed(const Composition& composition,
                                      const CancelFlag* cancel) const {
    if (isAlready(composition))
        return mPdf;
    Result<JobReading> reading = JobReading::start(folder(), std::nullopt, cancel);
    if (!reading)
        return reading.error();
    const Result<JobReading::File> whole = reading->read(mPdf, mName);
    if (!whole)
        return whole.error();
    // A name of its own each time: nothing is written over.
    QString path = QDir(folder()).filePath(
        QStringLiteral("pages%1.pdf").arg(QDir(folder()).entryList(QDir::Files).size()));
    const Result<Done> joined = reading->join(composition, path);
    if (!joined)
        return joined.error();
    return path;
}

Result<QString> JobDocument::postScript(const Composition& composition, int times,
                                        bool setsPageSize, const CancelFlag* cancel) const {
    const Result<QString> pdf = composed(composition, cancel);
    if (!pdf)
        return pdf.error();
    const worker::Interpret request{worker::Interpret::Target::PostScript,
                                    static_cast<std::uint32_t>(times), setsPageSize};
    return interpreted(*pdf, mName, request, folder(), cancel);
}

} // namespace labelcut
