// The job: its files as one PDF whose pages fit the paper.
#include "host/job/job_document.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/job/conversion.h"
#include "host/job/documents.h"
#include "host/job/failure.h"

namespace labelcut {

namespace {

using Pages = std::vector<QPDFPageObjectHelper>;

/// Measures that differ by less are the same paper: half a millimetre and a rounded point. Points.
constexpr double kSameMeasure = 2;

/// One of the job's files, opened.
struct Source {
    QString file;
    std::shared_ptr<QPDF> pdf;
    Pages pages;
};

Error broken(const QString& file, const std::exception& error) {
    if (const auto* damage = dynamic_cast<const QPDFExc*>(&error)) {
        if (damage->getErrorCode() == qpdf_e_password)
            return failure(QStringLiteral("\"%1\" is encrypted and asks for a password; save it "
                                          "without one first.")
                               .arg(file));
        return failure(QStringLiteral("\"%1\" is a broken PDF file (%2); save it anew.")
                           .arg(file, QString::fromStdString(damage->getMessageDetail())));
    }
    return failure(QStringLiteral("\"%1\" is a broken PDF file (%2); save it anew.")
                       .arg(file, QString::fromUtf8(error.what())));
}

Result<Source> open(const QString& file, const QString& path) {
    Source source;
    source.file = file;
    source.pdf = std::make_shared<QPDF>();
    source.pdf->setSuppressWarnings(true);
    try {
        source.pdf->processFile(QFile::encodeName(path).constData());
        QPDFPageDocumentHelper(*source.pdf).flattenAnnotations();
        source.pages = QPDFPageDocumentHelper(*source.pdf).getAllPages();
    } catch (const std::exception& error) {
        return broken(file, error);
    }
    if (source.pages.empty())
        return failure(QStringLiteral("\"%1\" has no pages; there is nothing to print.").arg(file));
    return source;
}

/// The measure at which a page is shown: its crop box, turned and scaled as the page says. Points.
QSizeF shownSize(QPDFPageObjectHelper& page) {
    QPDFObjectHandle box = page.getCropBox();
    if (!box.isRectangle())
        return {};
    const QPDFObjectHandle::Rectangle r = box.getArrayAsRectangle();
    QSizeF size(std::abs(r.urx - r.llx), std::abs(r.ury - r.lly));
    QPDFObjectHandle unit = page.getAttribute("/UserUnit", false);
    if (unit.isNumber() && unit.getNumericValue() > 0)
        size *= unit.getNumericValue();
    QPDFObjectHandle turn = page.getAttribute("/Rotate", false);
    if (turn.isInteger() && turn.getIntValue() % 180 != 0)
        size.transpose();
    return size;
}

bool isSame(const QSizeF& a, const QSizeF& b) {
    return std::abs(a.width() - b.width()) < kSameMeasure &&
           std::abs(a.height() - b.height()) < kSameMeasure;
}

bool fits(const std::optional<JobPaper>& paper, QPDFPageObjectHelper& page) {
    return !paper || isSame(shownSize(page), paper->size);
}

bool lieDifferently(const QSizeF& a, const QSizeF& b) {
    return (a.width() - a.height()) * (b.width() - b.height()) < 0;
}

/// A new page of `paper` in `target` that shows `page`.
QPDFPageObjectHelper laidOut(QPDF& target, QPDFPageObjectHelper page, const JobPaper& paper) {
    QSizeF size = shownSize(page);
    if (lieDifferently(size, paper.size)) {
        page = page.shallowCopyPage();
        page.rotatePage(90, true);
        size.transpose();
    }
    const QRectF area =
        isSame(size, paper.size) ? QRectF(QPointF(0, 0), paper.size) : paper.printable;
    const double height = paper.size.height();
    const QPDFObjectHandle::Rectangle place(area.left(), height - area.bottom(), area.right(),
                                            height - area.top());

    auto fresh = QPDFPageObjectHelper(target.makeIndirectObject(
        QPDFObjectHandle::parse("<< /Type /Page /Resources << /XObject << >> >> >>")));
    fresh.getObjectHandle().replaceKey(
        "/MediaBox", QPDFObjectHandle::newFromRectangle({0, 0, paper.size.width(), height}));
    const QPDFObjectHandle form = target.copyForeignObject(page.getFormXObjectForPage());
    fresh.getObjectHandle().getKey("/Resources").getKey("/XObject").replaceKey("/Label", form);
    const std::string content = fresh.placeFormXObject(form, "/Label", place);
    fresh.getObjectHandle().replaceKey("/Contents", QPDFObjectHandle::newStream(&target, content));
    return fresh;
}

Result<QString> written(QPDF& pdf, const QString& path) {
    try {
        QPDFWriter writer(pdf, QFile::encodeName(path).constData());
        writer.setPreserveEncryption(false);
        writer.write();
    } catch (const std::exception& error) {
        return failure(QStringLiteral("The temporary file \"%1\" cannot be written (%2); make room "
                                      "on its disk, or set TMPDIR to another folder.")
                           .arg(path, QString::fromUtf8(error.what())));
    }
    return path;
}

/// Everything on pages of the paper, in one file.
Result<QString> joined(std::vector<Source>& sources, const std::optional<JobPaper>& paper,
                       const QString& path) {
    QPDF target;
    target.emptyPDF();
    target.setSuppressWarnings(true);
    for (Source& source : sources) {
        try {
            for (QPDFPageObjectHelper& page : source.pages) {
                if (fits(paper, page))
                    QPDFPageDocumentHelper(target).addPage(page, false);
                else
                    QPDFPageDocumentHelper(target).addPage(laidOut(target, page, *paper), false);
            }
        } catch (const std::exception& error) {
            return broken(source.file, error);
        }
    }
    return written(target, path);
}

bool canStay(std::vector<Source>& sources, const std::optional<JobPaper>& paper) {
    return sources.size() == 1 && !sources.front().pdf->isEncrypted() &&
           !sources.front().pdf->anyWarnings() &&
           std::ranges::all_of(sources.front().pages,
                               [&](QPDFPageObjectHelper& page) { return fits(paper, page); });
}

} // namespace

Result<JobDocument> JobDocument::prepare(const QStringList& files,
                                         const std::optional<JobPaper>& paper) {
    JobDocument document;
    document.mFolder = std::make_unique<QTemporaryDir>();
    if (!document.mFolder->isValid())
        return failure(QStringLiteral("No temporary folder can be made (%1); set TMPDIR to a "
                                      "folder with room.")
                           .arg(document.mFolder->errorString()));
    if (files.isEmpty())
        return failure(QStringLiteral("No file is named; name one to print."));
    document.mName = QFileInfo(files.front()).fileName();

    QString onlyPath;
    std::vector<Source> sources;
    for (const QString& file : files) {
        const Result<DocumentKind> kind = documentKind(file);
        if (!kind)
            return kind.error();
        const QString name = QStringLiteral("file%1").arg(sources.size());
        const Result<QString> path = convertToPdf(file, *kind, paper, document.folder(), name);
        if (!path)
            return path.error();
        Result<Source> source = open(file, *path);
        if (!source)
            return source.error();
        onlyPath = *path;
        document.mPages += static_cast<int>(source->pages.size());
        if (source->pdf->anyWarnings())
            document.mRepaired << file;
        sources.push_back(std::move(*source));
    }
    if (canStay(sources, paper)) {
        document.mPdf = QFileInfo(onlyPath).absoluteFilePath();
        return document;
    }
    Result<QString> path =
        joined(sources, paper, QDir(document.folder()).filePath(QStringLiteral("job.pdf")));
    if (!path)
        return path.error();
    document.mPdf = *path;
    return document;
}

int JobDocument::pagesIn(const PageRange& range) const {
    return std::max(0, std::min(range.last, mPages) - std::max(range.first, 1) + 1);
}

Result<QString> JobDocument::excerpt(const PageRange& range) const {
    if (pagesIn(range) == mPages)
        return mPdf;
    Result<Source> source = open(mPdf, mPdf);
    if (!source)
        return source.error();
    const auto first = source->pages.begin() + (range.first - 1);
    std::vector<Source> sources{{mPdf, source->pdf, Pages(first, first + pagesIn(range))}};
    return joined(sources, std::nullopt, QDir(folder()).filePath(QStringLiteral("excerpt.pdf")));
}

} // namespace labelcut
