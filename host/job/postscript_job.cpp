// Job: PostScript for the printer, made without any print service.
#include "host/job/postscript_job.h"

#include <QFile>

#include <algorithm>
#include <string_view>

#include "host/core/atomic_file.h"
#include "host/core/failure.h"
#include "host/settings/ppd_calls.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Plain ASCII without line ends, at most 200 characters: what comments and job control can carry.
QByteArray plain(const QString& text) {
    QByteArray bytes;
    for (const QChar c : text.left(200))
        bytes += c.unicode() >= 0x20 && c.unicode() < 0x7f ? static_cast<char>(c.unicode()) : '?';
    return bytes;
}

bool repeatsPages(const PostScriptJob& job) {
    return job.copies > 1 && job.ppd->manual_copies;
}

/// The pages as device-independent PostScript that leaves paper and features alone.
Result<QString> pagesAsPostScript(const PostScriptJob& job) {
    return job.document->postScript(job.composition, repeatsPages(job) ? job.copies : 1,
                                    !ppd::markedPageSize(job.ppd), job.cancel);
}

/// What the PPD contributes, section by section.
struct Sections {
    QByteArray opening;
    QByteArray prolog;
    QByteArray setup;
    QByteArray page;
    QByteArray closing;
};

QByteArray copiesCode(const PostScriptJob& job) {
    if (job.copies < 2 || repeatsPages(job))
        return {};
    const QByteArray count = QByteArray::number(job.copies);
    return "%%BeginNonPPDFeature: NumCopies " + count + "\n<</NumCopies " + count +
           ">>setpagedevice\n%%EndNonPPDFeature\n";
}

Sections sectionsOf(const PostScriptJob& job) {
    Sections sections;
    sections.opening = ppd::emitSection(job.ppd, PPD_ORDER_EXIT) +
                       ppd::emitJobControl(job.ppd, plain(job.user), plain(job.title));
    sections.prolog = ppd::emitSection(job.ppd, PPD_ORDER_PROLOG);
    sections.setup = "%%BeginSetup\n" + copiesCode(job) +
                     ppd::emitSection(job.ppd, PPD_ORDER_DOCUMENT) +
                     ppd::emitSection(job.ppd, PPD_ORDER_ANY) + "%%EndSetup\n";
    sections.page = ppd::emitSection(job.ppd, PPD_ORDER_PAGE);
    sections.closing = ppd::emitJobControlEnd(job.ppd);
    return sections;
}

QByteArray header(const PostScriptJob& job) {
    return "%!PS-Adobe-3.0\n%%Title: " + plain(job.title) + "\n%%For: " + plain(job.user) + "\n";
}

/// Copies Ghostscript's PostScript and adds the sections where they belong.
class Assembly {
public:
    Assembly(const PostScriptJob& job, FileSink& target)
        : mHeader(header(job))
        , mSections(sectionsOf(job))
        , mTarget(target) {}

    /// @return whether `pages` was whole; a target that refuses bytes shows that by itself.
    bool copy(std::string_view pages) {
        mTarget.write(mSections.opening);
        // What stands between two comments goes over in one piece.
        std::size_t piece = 0;
        for (std::size_t line = 0; line < pages.size();) {
            const std::size_t end = std::min(pages.find('\n', line), pages.size() - 1) + 1;
            const std::string_view text = pages.substr(line, end - line);
            if (isComment(text)) {
                write(pages.substr(piece, line - piece));
                copyComment(text);
                piece = end;
            }
            const std::size_t next = pages.find("\n%", end - 1);
            line = next == std::string_view::npos ? pages.size() : next + 1;
        }
        write(pages.substr(piece));
        mTarget.write(mSections.closing);
        return mHasSetup && mEnded && mPages > 0;
    }

private:
    static bool isComment(std::string_view line) {
        return line.starts_with("%%") || line.starts_with("%!PS");
    }

    void write(std::string_view bytes) {
        mTarget.write(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    }

    void copyComment(std::string_view line) {
        // The first line becomes ours; the invocation names files of this machine.
        if (line.starts_with("%!PS")) {
            mTarget.write(mHeader);
            return;
        }
        if (line.starts_with("%%Invocation:"))
            return;
        write(line);
        if (line.starts_with("%%BeginProlog"))
            mTarget.write(mSections.prolog);
        if (line.starts_with("%%EndProlog")) {
            mTarget.write(mSections.setup);
            mHasSetup = true;
        }
        if (line.starts_with("%%BeginPageSetup")) {
            mTarget.write(mSections.page);
            ++mPages;
        }
        if (line.starts_with("%%EOF"))
            mEnded = true;
    }

    QByteArray mHeader;
    Sections mSections;
    FileSink& mTarget;
    bool mHasSetup = false;
    bool mEnded = false;
    int mPages = 0;
};

} // namespace

Result<qint64> writePostScript(const PostScriptJob& job, const QString& path) {
    const PageSelection& wanted = job.composition.pages;
    if (wanted.countIn(job.document->pages()) == 0)
        return failure(noSuchPage(wanted, job.document->pages()));
    const Result<QString> pages = pagesAsPostScript(job);
    if (!pages)
        return pages.error();
    const auto write = [&](FileSink& target) -> std::optional<QString> {
        QFile source(*pages);
        if (isCancelled(job.cancel))
            return cancelled().sentence;
        const auto* bytes = source.open(QIODevice::ReadOnly)
                                ? reinterpret_cast<const char*>(source.map(0, source.size()))
                                : nullptr;
        const bool isWhole =
            bytes && Assembly(job, target).copy({bytes, static_cast<std::size_t>(source.size())});
        if (isCancelled(job.cancel))
            return cancelled().sentence;
        return isWhole ? std::nullopt : std::optional(hostText("PagesCutShort"));
    };
    return writeWhole(path, write, job.cancel);
}

} // namespace labelcut
