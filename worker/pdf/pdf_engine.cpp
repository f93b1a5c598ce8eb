// Worker: PDF files, their pages, and pages laid out on paper, by libqpdf.
#include "worker/pdf/pdf_engine.h"

#include <qpdf/FileInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFSystemError.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace labelcut::worker {

namespace {

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

/// What of a page is shown, and how.
struct Shown {
    /// In the page's own units, the lower left corner first; never empty.
    QPDFObjectHandle::Rectangle box;
    /// Quarters, clockwise; 0 … 3.
    int turns = 0;
    /// Of the page's units. Points.
    double unit = 1;

    /// Whether the page itself says no more than this.
    bool isPlain = true;

    /// As it is shown, the turns included. Points.
    Size size() const {
        const Size upright{std::min((box.urx - box.llx) * unit, kLongestSide),
                           std::min((box.ury - box.lly) * unit, kLongestSide)};
        return turns % 2 == 0 ? upright : upright.turned();
    }
};

/// What is taken for a page that does not say how large it is, as Ghostscript and Poppler do.
QPDFObjectHandle::Rectangle letter() {
    return {0, 0, 612, 792};
}

/// The largest unit that a reader need take. Points.
constexpr double kLargestUnit = 75'000;

bool hasExtent(const QPDFObjectHandle::Rectangle& box) {
    return std::isfinite(box.urx - box.llx) && std::isfinite(box.ury - box.lly) &&
           box.urx > box.llx && box.ury > box.lly;
}

QPDFObjectHandle::Rectangle rectangleOf(QPDFObjectHandle box) {
    return box.isRectangle() ? box.getArrayAsRectangle() : QPDFObjectHandle::Rectangle();
}

bool isSame(const QPDFObjectHandle::Rectangle& a, const QPDFObjectHandle::Rectangle& b) {
    return a.llx == b.llx && a.lly == b.lly && a.urx == b.urx && a.ury == b.ury;
}

/// The crop box as far as it lies on the page.
QPDFObjectHandle::Rectangle shownBox(QPDFPageObjectHelper& page,
                                     const QPDFObjectHandle::Rectangle& media) {
    const QPDFObjectHandle::Rectangle crop = rectangleOf(page.getCropBox());
    const QPDFObjectHandle::Rectangle common(
        std::max(media.llx, crop.llx), std::max(media.lly, crop.lly), std::min(media.urx, crop.urx),
        std::min(media.ury, crop.ury));
    if (hasExtent(common))
        return common;
    return hasExtent(media) ? media : letter();
}

Shown shownOf(QPDFPageObjectHelper& page) {
    const QPDFObjectHandle::Rectangle media = rectangleOf(page.getMediaBox());
    Shown shown{shownBox(page, media), 0, 1, true};
    QPDFObjectHandle unit = page.getAttribute("/UserUnit", false);
    const bool isPoint = unit.isNull() || (unit.isNumber() && unit.getNumericValue() == 1);
    if (unit.isNumber() && unit.getNumericValue() > 0)
        shown.unit = std::min(unit.getNumericValue(), kLargestUnit);
    QPDFObjectHandle turn = page.getAttribute("/Rotate", false);
    const bool isQuarters = turn.isInteger() && turn.getIntValue() % 90 == 0;
    if (isQuarters)
        shown.turns = static_cast<int>((turn.getIntValue() / 90 % 4 + 4) % 4);
    shown.isPlain = isSame(shown.box, media) && isPoint && (isQuarters || turn.isNull());
    return shown;
}

/// From the page's own units to points, the lower left corner of what is shown at the origin,
/// after a number of quarters, clockwise.
QPDFMatrix turnedToOrigin(const Shown& shown, int turns) {
    const double u = shown.unit;
    const QPDFObjectHandle::Rectangle& box = shown.box;
    switch (turns % 4) {
    case 1:
        return {0, -u, u, 0, -u * box.lly, u * box.urx};
    case 2:
        return {-u, 0, 0, -u, u * box.urx, u * box.ury};
    case 3:
        return {0, u, -u, 0, u * box.ury, -u * box.llx};
    default:
        return {u, 0, 0, u, -u * box.llx, -u * box.lly};
    }
}

Label labelOf(const Paper& paper) {
    return {{paper.width, paper.height}, paper.left, paper.top, paper.right, paper.bottom};
}

/// A new page of that size in `target` that shows `page` at its place.
QPDFPageObjectHelper laidOut(QPDF& target, QPDFPageObjectHelper page, const Shown& shown,
                             const Size& size, const Placement& place) {
    QPDFMatrix matrix;
    matrix.translate(place.left, size.height - place.top - place.size.height);
    matrix.scale(place.scale, place.scale);
    matrix.concat(turnedToOrigin(shown, shown.turns + (place.isTurned ? 1 : 0)));

    QPDFObjectHandle form = page.getFormXObjectForPage(false);
    form.getDict().replaceKey("/BBox", QPDFObjectHandle::newFromRectangle(shown.box));
    auto fresh = QPDFPageObjectHelper(target.makeIndirectObject(
        QPDFObjectHandle::parse("<< /Type /Page /Resources << /XObject << >> >> >>")));
    const QPDFObjectHandle::Rectangle whole(0, 0, size.width, size.height);
    fresh.getObjectHandle().replaceKey("/MediaBox", QPDFObjectHandle::newFromRectangle(whole));
    fresh.getObjectHandle()
        .getKey("/Resources")
        .getKey("/XObject")
        .replaceKey("/Label", target.copyForeignObject(form));
    const std::string content = "q\n" + matrix.unparse() + " cm\n/Label Do\nQ\n";
    fresh.getObjectHandle().replaceKey("/Contents", QPDFObjectHandle::newStream(&target, content));
    return fresh;
}

/// A page on its own: as large as it is shown.
Placement alone(const Size& size) {
    Placement place;
    place.isUntouched = true;
    place.size = size;
    return place;
}

/// The page as it is sent.
QPDFPageObjectHelper sent(QPDF& target, QPDFPageObjectHelper& page, const Join& request) {
    const Shown shown = shownOf(page);
    const Size size = request.paper ? labelOf(*request.paper).size : shown.size();
    const Placement place =
        request.paper ? placed(shown.size(), labelOf(*request.paper), request.fit) : alone(size);
    if (place.isUntouched && shown.isPlain)
        return page;
    return laidOut(target, page, shown, size, place);
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

    Opened described() const {
        Opened opened;
        opened.pages = static_cast<std::uint32_t>(mPages.size());
        opened.isRepaired = mPdf.anyWarnings();
        opened.isEncrypted = mPdf.isEncrypted();
        opened.isPlain = std::all_of(mPages.begin(), mPages.end(), [](QPDFPageObjectHelper page) {
            return shownOf(page).isPlain;
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

Answer write(const std::vector<double>& numbers, Descriptor target) {
    FILE* file = fileOf(std::move(target), "wb");
    if (!file)
        return Failed{Problem::OutOfMemory, {}, 0};
    const bool isWhole =
        std::fwrite(numbers.data(), sizeof(double), numbers.size(), file) == numbers.size();
    if (std::fclose(file) == 0 && isWhole)
        return Done();
    return Failed{Problem::NotWritten, std::strerror(errno), kNoFile};
}

class Engine : public PdfEngine {
public:
    Answer open(Descriptor document, const Step& step) override {
        auto content = std::make_unique<Content>(mFiles.size());
        if (const auto failed = content->read(std::move(document), step))
            return *failed;
        try {
            const Opened opened = content->described();
            mFiles.push_back(std::move(content));
            return opened;
        } catch (const std::exception& error) {
            return broken(error, mFiles.size());
        }
    }

    Answer join(const Join& request, Descriptor target, const Step& step) override {
        const std::vector<Source> sources = sourcesOf(request);
        // Repeated, a few pages become too many; what is only put together is as large as it is.
        const std::uint64_t times = std::uint64_t{request.repeats} * request.sets;
        if (times > 1 && sources.size() > kMostPages / times)
            return Failed{Problem::TooManyPages, {}, kNoFile};
        QPDF joined;
        joined.emptyPDF();
        joined.setSuppressWarnings(true);
        if (const auto failed = addPages(joined, sources, request, step))
            return *failed;
        return write(joined, std::move(target), step);
    }

    Answer measure(Descriptor target, const Step& step) override {
        std::vector<double> sides;
        for (std::size_t file = 0; file < mFiles.size(); ++file) {
            try {
                for (QPDFPageObjectHelper& page : mFiles[file]->pages()) {
                    step();
                    const Size size = shownOf(page).size();
                    sides.insert(sides.end(), {size.width, size.height});
                }
            } catch (const std::exception& error) {
                return broken(error, file);
            }
        }
        return write(sides, std::move(target));
    }

private:
    /// A page of a file.
    struct Source {
        std::size_t file = 0;
        QPDFPageObjectHelper* page = nullptr;
    };

    /// What is asked for, in the order in which it is sent.
    std::vector<Source> sourcesOf(const Join& request) {
        std::vector<Source> sources;
        std::uint32_t number = 0;
        for (std::size_t file = 0; file < mFiles.size(); ++file) {
            for (QPDFPageObjectHelper& page : mFiles[file]->pages()) {
                if (isAskedFor(++number, request.pages))
                    sources.push_back({file, &page});
            }
        }
        if (request.isReversed)
            std::reverse(sources.begin(), sources.end());
        return sources;
    }

    static std::optional<Failed> addPages(QPDF& joined, const std::vector<Source>& sources,
                                          const Join& request, const Step& step) {
        QPDFPageDocumentHelper pages(joined);
        std::vector<QPDFPageObjectHelper> made;
        std::uint32_t toSkip = request.skipped;
        for (std::size_t i = 0; i < sources.size() * request.sets; ++i) {
            const Source& source = sources[i % sources.size()];
            try {
                step();
                if (i < sources.size())
                    made.push_back(sent(joined, *source.page, request));
                const std::uint32_t skipped = std::min(toSkip, request.repeats);
                toSkip -= skipped;
                // The library makes another page of one that is there.
                for (std::uint32_t again = skipped; again < request.repeats; ++again)
                    pages.addPage(made[i % sources.size()], false);
            } catch (const std::exception& error) {
                return broken(error, source.file);
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
