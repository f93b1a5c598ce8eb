// Documents: its files as one PDF whose pages fit the paper.
#include "host/documents/job_document.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <vector>

#include "host/core/failure.h"
#include "host/documents/conversion.h"
#include "host/documents/documents.h"
#include "host/documents/pdf_file.h"
#include "host/texts/host_text.h"

namespace labelcut {

Result<JobDocument> JobDocument::prepare(const QStringList& files,
                                         const std::optional<JobPaper>& paper,
                                         const CancelFlag* cancel) {
    // Before the document, whose folder is then gone before what was read is taken apart.
    std::vector<PdfFile> pdfs;
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

    for (const QString& file : files) {
        if (cancel && cancel->isCancelled())
            return cancelled();
        const Result<DocumentKind> kind = documentKind(file);
        if (!kind)
            return kind.error();
        const QString number = QString::number(pdfs.size());
        const auto copy = copyDocument(
            file, QDir(document.folder()).filePath(QStringLiteral("copy") + number), cancel);
        if (!copy)
            return copy.error();
        document.mDigests << copy->digest;
        const Result<QString> path = convertToPdf(copy->path, file, *kind, paper, document.folder(),
                                                  QStringLiteral("file") + number, cancel);
        if (!path)
            return path.error();
        Result<PdfFile> pdf = PdfFile::open(*path, file, cancel);
        if (!pdf)
            return pdf.error();
        document.mPdf = QFileInfo(*path).absoluteFilePath();
        document.mPages += pdf->pages();
        if (pdf->isRepaired())
            document.mRepaired << file;
        pdfs.push_back(std::move(*pdf));
    }
    const bool canStay = pdfs.size() == 1 && !pdfs.front().isEncrypted() &&
                         !pdfs.front().isRepaired() && pdfs.front().fits(paper);
    if (canStay)
        return document;
    document.mPdf = QDir(document.folder()).filePath(QStringLiteral("job.pdf"));
    const Result<Done> joined = PdfFile::join(pdfs, {}, paper, document.mPdf, cancel);
    if (!joined)
        return joined.error();
    return document;
}

QString JobDocument::folder() const {
    return QFileInfo(mFolder->path()).absoluteFilePath();
}

int JobDocument::pagesIn(const PageRange& range) const {
    return std::max(0, std::min(range.last, mPages) - std::max(range.first, 1) + 1);
}

Result<QString> JobDocument::excerpt(const PageRange& range, const CancelFlag* cancel) const {
    if (pagesIn(range) == mPages)
        return mPdf;
    Result<PdfFile> whole = PdfFile::open(mPdf, mName, cancel);
    if (!whole)
        return whole.error();
    std::vector<PdfFile> files;
    files.push_back(std::move(*whole));
    QString path = QDir(folder()).filePath(QStringLiteral("excerpt.pdf"));
    const Result<Done> joined = PdfFile::join(files, range, std::nullopt, path, cancel);
    if (!joined)
        return joined.error();
    return path;
}

} // namespace labelcut
