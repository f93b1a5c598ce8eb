// The job: PDF files, their pages, and pages laid out on paper.
#include "host/job/pdf_file.h"

#include <QFile>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cmath>

#include "host/job/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

struct PdfFile::Content {
    QString name;
    QPDF pdf;
    std::vector<QPDFPageObjectHelper> pages;
};

namespace {

/// Measures that differ by less are the same paper: half a millimetre and a rounded point. Points.
constexpr double kSameMeasure = 2;

Error broken(const QString& file, const std::exception& error) {
    if (const auto* damage = dynamic_cast<const QPDFExc*>(&error)) {
        if (damage->getErrorCode() == qpdf_e_password)
            return failure(hostText("PdfEncrypted").arg(file));
        return failure(
            hostText("PdfBroken").arg(file, QString::fromStdString(damage->getMessageDetail())));
    }
    return failure(hostText("PdfBroken").arg(file, QString::fromUtf8(error.what())));
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

bool fitsPaper(const std::optional<JobPaper>& paper, QPDFPageObjectHelper& page) {
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

Result<Done> write(QPDF& pdf, const QString& path) {
    try {
        QPDFWriter writer(pdf, QFile::encodeName(path).constData());
        writer.setPreserveEncryption(false);
        writer.write();
    } catch (const std::exception& error) {
        return failure(
            hostText("CannotWriteTemporaryBecause").arg(path, QString::fromUtf8(error.what())));
    }
    return Done();
}

} // namespace

PdfFile::PdfFile(std::unique_ptr<Content> content)
    : mContent(std::move(content)) {}
PdfFile::PdfFile(PdfFile&&) noexcept = default;
PdfFile& PdfFile::operator=(PdfFile&&) noexcept = default;
PdfFile::~PdfFile() = default;

Result<PdfFile> PdfFile::open(const QString& path, const QString& name) {
    auto content = std::make_unique<Content>();
    content->name = name;
    content->pdf.setSuppressWarnings(true);
    try {
        content->pdf.processFile(QFile::encodeName(path).constData());
        QPDFPageDocumentHelper(content->pdf).flattenAnnotations();
        content->pages = QPDFPageDocumentHelper(content->pdf).getAllPages();
    } catch (const std::exception& error) {
        return broken(name, error);
    }
    if (content->pages.empty())
        return failure(hostText("WithoutPages").arg(name));
    return PdfFile(std::move(content));
}

int PdfFile::pages() const {
    return static_cast<int>(mContent->pages.size());
}

bool PdfFile::isRepaired() const {
    return mContent->pdf.anyWarnings();
}

bool PdfFile::isEncrypted() const {
    return mContent->pdf.isEncrypted();
}

bool PdfFile::fits(const std::optional<JobPaper>& paper) const {
    return std::all_of(mContent->pages.begin(), mContent->pages.end(),
                       [&](QPDFPageObjectHelper& page) { return fitsPaper(paper, page); });
}

Result<Done> PdfFile::join(const std::vector<PdfFile>& files, const PageRange& range,
                           const std::optional<JobPaper>& paper, const QString& target) {
    QPDF joined;
    joined.emptyPDF();
    joined.setSuppressWarnings(true);
    QPDFPageDocumentHelper pages(joined);
    int number = 0;
    for (const PdfFile& file : files) {
        try {
            for (QPDFPageObjectHelper& page : file.mContent->pages) {
                ++number;
                if (number < range.first || number > range.last)
                    continue;
                pages.addPage(fitsPaper(paper, page) ? page : laidOut(joined, page, *paper), false);
            }
        } catch (const std::exception& error) {
            return broken(file.mContent->name, error);
        }
    }
    return write(joined, target);
}

} // namespace labelcut
