// Worker: PDF files, their pages, and pages laid out on paper, by libqpdf.
#include "worker/pdf/pdf_engine.h"

#include <qpdf/FileInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFSystemError.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace labelcut::worker {

namespace {

/// Measures that differ by less are the same paper: half a millimetre and a rounded point. Points.
constexpr double kSameMeasure = 2;

/// A file that tells when a part of it is read for the first time, which ends with the file.
class ProgressingFile : public FileInputSource {
public:
    /// @param number  of the file, by which libqpdf calls it when it finds damage.
    ProgressingFile(std::size_t number, FILE* document, Step step)
        : FileInputSource(std::to_string(number).c_str(), document, true)
        , mStep(std::move(step)) {}
    size_t read(char* bytes, size_t size) override {
        stepAt(tell());
        return FileInputSource::read(bytes, size);
    }
    qpdf_offset_t findAndSkipNextEOL() override {
        stepAt(tell());
        return FileInputSource::findAndSkipNextEOL();
    }

private:
    static constexpr qpdf_offset_t kPart = 1 << 12; ///< Bytes.

    void stepAt(qpdf_offset_t offset) {
        const auto part = static_cast<std::size_t>(std::max<qpdf_offset_t>(offset, 0) / kPart);
        if (part >= mSeen.size())
            mSeen.resize(part + 1);
        if (mSeen[part])
            return;
        mSeen[part] = true;
        mStep();
    }

    Step mStep;
    std::vector<bool> mSeen;
};

/// The file behind a descriptor, which it takes; null when there is no memory for it.
FILE* fileOf(Descriptor descriptor, const char* mode) {
    FILE* file = fdopen(descriptor.number(), mode);
    if (file)
        descriptor.release();
    return file;
}

/// The number of the file that libqpdf speaks of, see ProgressingFile; `otherwise` when of none.
std::size_t fileOf(const QPDFExc& damage, std::size_t otherwise) {
    const std::string& name = damage.getFilename();
    std::size_t number = otherwise;
    std::from_chars(name.data(), name.data() + name.size(), number);
    return number;
}

Failed broken(const std::exception& error, std::size_t file) {
    Failed failed{Problem::Broken, error.what(), static_cast<std::uint32_t>(file)};
    const auto* damage = dynamic_cast<const QPDFExc*>(&error);
    if (!damage)
        return failed;
    failed.file = static_cast<std::uint32_t>(fileOf(*damage, file));
    failed.detail = damage->getMessageDetail();
    if (damage->getErrorCode() == qpdf_e_password)
        failed = {Problem::Encrypted, std::string(), failed.file};
    return failed;
}

/// Width and height. Points.
struct Size {
    double width = 0;
    double height = 0;

    Size turned() const { return {height, width}; }
};

/// The measure at which a page is shown: its crop box, turned and scaled as the page says.
Size shownSize(QPDFPageObjectHelper& page) {
    QPDFObjectHandle box = page.getCropBox();
    if (!box.isRectangle())
        return {};
    const QPDFObjectHandle::Rectangle r = box.getArrayAsRectangle();
    Size size{std::abs(r.urx - r.llx), std::abs(r.ury - r.lly)};
    QPDFObjectHandle unit = page.getAttribute("/UserUnit", false);
    if (unit.isNumber() && unit.getNumericValue() > 0)
        size = {size.width * unit.getNumericValue(), size.height * unit.getNumericValue()};
    QPDFObjectHandle turn = page.getAttribute("/Rotate", false);
    if (turn.isInteger() && turn.getIntValue() % 180 != 0)
        size = size.turned();
    return size;
}

Size sizeOf(const Paper& paper) {
    return {paper.width, paper.height};
}

bool isSame(const Size& a, const Size& b) {
    return std::abs(a.width - b.width) < kSameMeasure &&
           std::abs(a.height - b.height) < kSameMeasure;
}

bool fitsPaper(const std::optional<Paper>& paper, QPDFPageObjectHelper& page) {
    return !paper || isSame(shownSize(page), sizeOf(*paper));
}

bool lieDifferently(const Size& a, const Size& b) {
    return (a.width - a.height) * (b.width - b.height) < 0;
}

/// A new page of `paper` in `target` that shows `page`.
QPDFPageObjectHelper laidOut(QPDF& target, QPDFPageObjectHelper page, const Paper& paper) {
    Size size = shownSize(page);
    if (lieDifferently(size, sizeOf(paper))) {
        page = page.shallowCopyPage();
        page.rotatePage(90, true);
        size = size.turned();
    }
    const QPDFObjectHandle::Rectangle whole(0, 0, paper.width, paper.height);
    const QPDFObjectHandle::Rectangle printable(paper.left, paper.height - paper.bottom,
                                                paper.right, paper.height - paper.top);
    const auto& place = isSame(size, sizeOf(paper)) ? whole : printable;

    auto fresh = QPDFPageObjectHelper(target.makeIndirectObject(
        QPDFObjectHandle::parse("<< /Type /Page /Resources << /XObject << >> >> >>")));
    fresh.getObjectHandle().replaceKey("/MediaBox", QPDFObjectHandle::newFromRectangle(whole));
    const QPDFObjectHandle form = target.copyForeignObject(page.getFormXObjectForPage());
    fresh.getObjectHandle().getKey("/Resources").getKey("/XObject").replaceKey("/Label", form);
    const std::string content = fresh.placeFormXObject(form, "/Label", place);
    fresh.getObjectHandle().replaceKey("/Contents", QPDFObjectHandle::newStream(&target, content));
    return fresh;
}

bool isAskedFor(std::uint32_t page, const std::vector<PageRun>& runs) {
    return runs.empty() || std::any_of(runs.begin(), runs.end(), [page](const PageRun& run) {
               return page >= run.first && page <= run.last;
           });
}

/// One opened file.
class Content {
public:
    /// @param number  of the file, as they are opened, from 0.
    explicit Content(std::size_t number)
        : mNumber(number) {
        mPdf.setSuppressWarnings(true);
    }

    /// @return nothing when it was opened.
    std::optional<Failed> read(Descriptor document, const Step& step) {
        FILE* file = fileOf(std::move(document), "rb");
        if (!file)
            return Failed{Problem::OutOfMemory, {}, 0};
        try {
            mPdf.processInputSource(std::make_shared<ProgressingFile>(mNumber, file, step));
            QPDFPageDocumentHelper(mPdf).flattenAnnotations();
            mPages = QPDFPageDocumentHelper(mPdf).getAllPages();
        } catch (const std::exception& error) {
            return broken(error, mNumber);
        }
        if (mPages.empty())
            return Failed{Problem::WithoutPages, {}, 0};
        if (mPages.size() > kMostPages)
            return Failed{Problem::TooManyPages, {}, 0};
        return std::nullopt;
    }

    Opened described(const std::optional<Paper>& paper) const {
        Opened opened;
        opened.pages = static_cast<std::uint32_t>(mPages.size());
        opened.isRepaired = mPdf.anyWarnings();
        opened.isEncrypted = mPdf.isEncrypted();
        opened.fits = std::all_of(mPages.begin(), mPages.end(), [&](QPDFPageObjectHelper page) {
            return fitsPaper(paper, page);
        });
        return opened;
    }

    std::vector<QPDFPageObjectHelper>& pages() { return mPages; }

private:
    std::size_t mNumber;
    QPDF mPdf;
    std::vector<QPDFPageObjectHelper> mPages;
};

Answer write(QPDF& pdf, Descriptor target, const Step& step) {
    FILE* file = fileOf(std::move(target), "wb");
    if (!file)
        return Failed{Problem::OutOfMemory, {}, 0};
    try {
        QPDFWriter writer(pdf);
        writer.setOutputFile("target", file, true);
        writer.setPreserveEncryption(false);
        writer.registerProgressReporter(
            std::make_shared<QPDFWriter::FunctionProgressReporter>([&step](int) { step(); }));
        writer.write();
    } catch (const QPDFSystemError& error) {
        return Failed{Problem::NotWritten, error.what(), kNoFile};
    } catch (const std::exception& error) {
        return broken(error, kNoFile);
    }
    return Done();
}

class Engine : public PdfEngine {
public:
    Answer open(Descriptor document, const std::optional<Paper>& paper, const Step& step) override {
        auto content = std::make_unique<Content>(mFiles.size());
        if (const auto failed = content->read(std::move(document), step))
            return *failed;
        try {
            const Opened opened = content->described(paper);
            mFiles.push_back(std::move(content));
            return opened;
        } catch (const std::exception& error) {
            return broken(error, mFiles.size());
        }
    }

    Answer join(const Join& request, Descriptor target, const Step& step) override {
        QPDF joined;
        joined.emptyPDF();
        joined.setSuppressWarnings(true);
        if (const auto failed = addPages(joined, request, step))
            return *failed;
        return write(joined, std::move(target), step);
    }

private:
    std::optional<Failed> addPages(QPDF& joined, const Join& request, const Step& step) {
        QPDFPageDocumentHelper pages(joined);
        std::uint32_t number = 0;
        for (std::size_t file = 0; file < mFiles.size(); ++file) {
            try {
                for (QPDFPageObjectHelper& page : mFiles[file]->pages()) {
                    if (!isAskedFor(++number, request.pages))
                        continue;
                    step();
                    pages.addPage(fitsPaper(request.paper, page)
                                      ? page
                                      : laidOut(joined, page, *request.paper),
                                  false);
                }
            } catch (const std::exception& error) {
                return broken(error, file);
            }
        }
        return std::nullopt;
    }

    std::vector<std::unique_ptr<Content>> mFiles;
};

} // namespace

} // namespace labelcut::worker

extern "C" __attribute__((visibility("default"))) labelcut::worker::PdfEngine* labelcutPdfEngine() {
    static labelcut::worker::Engine engine;
    return &engine;
}
