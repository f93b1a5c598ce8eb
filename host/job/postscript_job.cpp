// The job: PostScript for the printer, made without any print service.
#include "host/job/postscript_job.h"

#include <QFile>

#include <algorithm>

#include "host/job/atomic_file.h"
#include "host/job/failure.h"
#include "host/job/ghostscript.h"
#include "host/texts/host_text.h"
#include "platform/printing/ppd_calls.h"
#include "platform/printing/print_errors.h"

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
    const Result<QString> pdf = job.document->excerpt(job.pages);
    if (!pdf)
        return pdf.error();
    GhostscriptRun run;
    run.about = hostText("Quoted").arg(job.document->name());
    run.switches = {QStringLiteral("-sDEVICE=ps2write"), QStringLiteral("-dNOMEDIAATTRS"),
                    QStringLiteral("-dAutoRotatePages=/None")};
    if (ppd::markedPageSize(job.ppd))
        run.switches << QStringLiteral("-dSetPageSize=false");
    for (int copy = 0; copy < (repeatsPages(job) ? job.copies : 1); ++copy)
        run.inputs << *pdf;
    run.folder = job.document->folder();
    run.output = QStringLiteral("pages.ps");
    run.cancel = job.cancel;
    return runGhostscript(run);
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

/// Copies Ghostscript's PostScript line by line and adds the sections where they belong.
class Assembly {
public:
    Assembly(const PostScriptJob& job, FileSink& target)
        : mHeader(header(job))
        , mSections(sectionsOf(job))
        , mTarget(target) {}

    /// @return whether `pages` was whole; a target that refuses bytes shows that by itself.
    bool copy(QIODevice& pages) {
        mTarget.write(mSections.opening);
        while (!pages.atEnd())
            copyLine(pages.readLine());
        mTarget.write(mSections.closing);
        return mHasSetup && mEnded && mPages > 0;
    }

private:
    void copyLine(const QByteArray& line) {
        // The first line becomes ours; the invocation names files of this machine.
        if (line.startsWith("%!PS")) {
            mTarget.write(mHeader);
            return;
        }
        if (line.startsWith("%%Invocation:"))
            return;
        mTarget.write(line);
        if (line.startsWith("%%BeginProlog"))
            mTarget.write(mSections.prolog);
        if (line.startsWith("%%EndProlog")) {
            mTarget.write(mSections.setup);
            mHasSetup = true;
        }
        if (line.startsWith("%%BeginPageSetup")) {
            mTarget.write(mSections.page);
            ++mPages;
        }
        if (line.startsWith("%%EOF"))
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
    if (job.document->pagesIn(job.pages) == 0)
        return failure(noSuchPage(job.pages, job.document->pages()));
    const Result<QString> pages = pagesAsPostScript(job);
    if (!pages)
        return pages.error();
    return writeWhole(path, [&](FileSink& target) -> std::optional<QString> {
        QFile source(*pages);
        if (job.cancel && job.cancel->isCancelled())
            return printerrors::cancelled().sentence;
        if (source.open(QIODevice::ReadOnly) && Assembly(job, target).copy(source))
            return std::nullopt;
        return hostText("PagesCutShort");
    });
}

} // namespace labelcut
