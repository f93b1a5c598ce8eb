// The job: PDF files, their pages, and pages laid out on paper, by libqpdf.
#include "host/job/pdf_engine.h"

#include <QFile>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cmath>

namespace labelcut {

namespace {

using Kind = PdfProblem::Kind;

/// Measures that differ by less are the same paper: half a millimetre and a rounded point. Points.
constexpr double kSameMeasure = 2;

PdfProblem broken(const QString& file, const std::exception& error) {
    const auto* damage = dynamic_cast<const QPDFExc*>(&error);
    if (!damage)
        return {Kind::Broken, file, QString::fromUtf8(error.what())};
    if (damage->getErrorCode() == qpdf_e_password)
        return {Kind::Encrypted, file, QString()};
    return {Kind::Broken, file, QString::fromStdString(damage->getMessageDetail())};
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

std::optional<PdfProblem> write(QPDF& pdf, const QString& path) {
    // The writer keeps the pointer and reads the name again when something fails.
    const QByteArray name = QFile::encodeName(path);
    try {
        QPDFWriter writer(pdf, name.constData());
        writer.setPreserveEncryption(false);
        writer.write();
    } catch (const std::exception& error) {
        return PdfProblem{Kind::NotWritten, path, QString::fromUtf8(error.what())};
    }
    return std::nullopt;
}

class Content : public PdfContent {
public:
    explicit Content(const QString& name)
        : mName(name) {
        mPdf.setSuppressWarnings(true);
    }

    std::optional<PdfProblem> read(const QString& path) {
        try {
            mPdf.processFile(QFile::encodeName(path).constData());
            QPDFPageDocumentHelper(mPdf).flattenAnnotations();
            mPages = QPDFPageDocumentHelper(mPdf).getAllPages();
        } catch (const std::exception& error) {
            return broken(mName, error);
        }
        if (mPages.empty())
            return PdfProblem{Kind::WithoutPages, mName, QString()};
        return std::nullopt;
    }

    int pages() const override { return static_cast<int>(mPages.size()); }
    bool isRepaired() const override { return mPdf.anyWarnings(); }
    bool isEncrypted() const override { return mPdf.isEncrypted(); }
    bool fits(const std::optional<JobPaper>& paper) const override {
        return std::all_of(mPages.begin(), mPages.end(),
                           [&](QPDFPageObjectHelper page) { return fitsPaper(paper, page); });
    }

    const QString& name() const { return mName; }
    std::vector<QPDFPageObjectHelper>& allPages() { return mPages; }

private:
    QString mName;
    QPDF mPdf;
    std::vector<QPDFPageObjectHelper> mPages;
};

class Engine : public PdfEngine {
public:
    std::unique_ptr<PdfContent> open(const QString& path, const QString& name,
                                     PdfProblem& problem) const override {
        auto content = std::make_unique<Content>(name);
        const std::optional<PdfProblem> found = content->read(path);
        if (!found)
            return content;
        problem = *found;
        return nullptr;
    }

    std::optional<PdfProblem> join(const std::vector<PdfContent*>& files, const PageRange& range,
                                   const std::optional<JobPaper>& paper,
                                   const QString& target) const override {
        QPDF joined;
        joined.emptyPDF();
        joined.setSuppressWarnings(true);
        QPDFPageDocumentHelper pages(joined);
        int number = 0;
        for (PdfContent* file : files) {
            auto* content = static_cast<Content*>(file);
            try {
                for (QPDFPageObjectHelper& page : content->allPages()) {
                    ++number;
                    if (number < range.first || number > range.last)
                        continue;
                    pages.addPage(fitsPaper(paper, page) ? page : laidOut(joined, page, *paper),
                                  false);
                }
            } catch (const std::exception& error) {
                return broken(content->name(), error);
            }
        }
        return write(joined, target);
    }
};

} // namespace

} // namespace labelcut

extern "C" __attribute__((visibility("default"))) const labelcut::PdfEngine* labelcutPdfEngine() {
    static const labelcut::Engine engine;
    return &engine;
}
