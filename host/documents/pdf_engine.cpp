// Documents: PDF files, their pages, and pages laid out on paper, by libqpdf.
#include "host/documents/pdf_engine.h"

#include <QFile>

#include <qpdf/FileInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cmath>
#include <utility>

namespace labelcut {

namespace {

using Kind = PdfProblem::Kind;

/// Measures that differ by less are the same paper: half a millimetre and a rounded point. Points.
constexpr double kSameMeasure = 2;

/// Thrown through libqpdf when work is no longer wanted. Not a std::exception: libqpdf takes those
/// for damage of the file, which it lives with where it can.
struct Interruption {};

void stopIf(const StopWish& stop) {
    if (stop())
        throw Interruption();
}

/// A file that is read for as long as that is wanted. libqpdf reads objects when it comes to them,
/// so that this ends its walks through a file as well.
class InterruptibleFile : public FileInputSource {
public:
    InterruptibleFile(const char* name, StopWish stop)
        : FileInputSource(name)
        , mStop(std::move(stop)) {}
    size_t read(char* bytes, size_t size) override {
        stopIf(mStop);
        return FileInputSource::read(bytes, size);
    }
    qpdf_offset_t findAndSkipNextEOL() override {
        stopIf(mStop);
        return FileInputSource::findAndSkipNextEOL();
    }

private:
    StopWish mStop;
};

PdfProblem interrupted(const QString& file) {
    return {Kind::Interrupted, file, QString()};
}

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

std::optional<PdfProblem> write(QPDF& pdf, const QString& path, const StopWish& stop) {
    // The writer keeps the pointer and reads the name again when something fails.
    const QByteArray name = QFile::encodeName(path);
    try {
        QPDFWriter writer(pdf, name.constData());
        writer.setPreserveEncryption(false);
        writer.registerProgressReporter(
            std::make_shared<QPDFWriter::FunctionProgressReporter>([&stop](int) { stopIf(stop); }));
        writer.write();
    } catch (const Interruption&) {
        return interrupted(path);
    } catch (const std::exception& error) {
        return PdfProblem{Kind::NotWritten, path, QString::fromUtf8(error.what())};
    }
    return std::nullopt;
}

class Content : public PdfContent {
public:
    Content(const QString& name, StopWish stop)
        : mName(name)
        , mStop(std::move(stop)) {
        mPdf.setSuppressWarnings(true);
    }

    std::optional<PdfProblem> read(const QString& path) {
        try {
            mPdf.processInputSource(
                std::make_shared<InterruptibleFile>(QFile::encodeName(path).constData(), mStop));
            QPDFPageDocumentHelper(mPdf).flattenAnnotations();
            mPages = QPDFPageDocumentHelper(mPdf).getAllPages();
        } catch (const Interruption&) {
            return interrupted(mName);
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
    /// Taking many objects apart lasts longer than whoever stopped the work should wait: what was
    /// made of this file goes with it.
    void keep(std::unique_ptr<QPDF> unfinished) { mUnfinished = std::move(unfinished); }

private:
    QString mName;
    StopWish mStop;
    QPDF mPdf;
    std::vector<QPDFPageObjectHelper> mPages;
    std::unique_ptr<QPDF> mUnfinished;
};

class Engine : public PdfEngine {
public:
    std::unique_ptr<PdfContent> open(const QString& path, const QString& name, const StopWish& stop,
                                     PdfProblem& problem) const override {
        auto content = std::make_unique<Content>(name, stop);
        const std::optional<PdfProblem> found = content->read(path);
        if (!found)
            return content;
        problem = *found;
        return nullptr;
    }

    std::optional<PdfProblem> join(const std::vector<PdfContent*>& files, const PageRange& range,
                                   const std::optional<JobPaper>& paper, const QString& target,
                                   const StopWish& stop) const override {
        auto joined = std::make_unique<QPDF>();
        joined->emptyPDF();
        joined->setSuppressWarnings(true);
        std::optional<PdfProblem> problem = addPages(*joined, files, range, paper, stop);
        if (!problem)
            problem = write(*joined, target, stop);
        if (problem && problem->kind == Kind::Interrupted)
            static_cast<Content*>(files.front())->keep(std::move(joined));
        return problem;
    }

private:
    static std::optional<PdfProblem> addPages(QPDF& joined, const std::vector<PdfContent*>& files,
                                              const PageRange& range,
                                              const std::optional<JobPaper>& paper,
                                              const StopWish& stop) {
        QPDFPageDocumentHelper pages(joined);
        int number = 0;
        for (PdfContent* file : files) {
            auto* content = static_cast<Content*>(file);
            try {
                for (QPDFPageObjectHelper& page : content->allPages()) {
                    stopIf(stop);
                    ++number;
                    if (number < range.first || number > range.last)
                        continue;
                    pages.addPage(fitsPaper(paper, page) ? page : laidOut(joined, page, *paper),
                                  false);
                }
            } catch (const Interruption&) {
                return interrupted(content->name());
            } catch (const std::exception& error) {
                return broken(content->name(), error);
            }
        }
        return std::nullopt;
    }
};

} // namespace

} // namespace labelcut

extern "C" __attribute__((visibility("default"))) const labelcut::PdfEngine* labelcutPdfEngine() {
    static const labelcut::Engine engine;
    return &engine;
}
