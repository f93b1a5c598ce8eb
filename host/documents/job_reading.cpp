// Documents: the files of a job on their way through the workers.
#include "host/documents/job_reading.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "host/core/copies.h"
#include "host/core/failure.h"
#include "host/texts/host_text.h"
#include "worker/protocol/descriptor.h"

namespace labelcut {

using worker::Descriptor;

namespace {

worker::Paper sent(const JobPaper& paper) {
    const QRectF& area = paper.printable;
    return {paper.name.toStdString(),
            paper.size.width(),
            paper.size.height(),
            area.left(),
            area.top(),
            area.right(),
            area.bottom()};
}

std::optional<worker::Paper> sent(const std::optional<JobPaper>& paper) {
    return paper ? std::optional(sent(*paper)) : std::nullopt;
}

std::vector<worker::PageRun> sent(const PageSelection& pages) {
    static_assert(PageSelection::kMostRanges <= worker::kMostRuns);
    std::vector<worker::PageRun> runs;
    for (const PageRange& range : pages.ranges())
        runs.push_back(
            {static_cast<std::uint32_t>(range.first), static_cast<std::uint32_t>(range.last)});
    return runs;
}

/// What drawings are laid out on where no paper is chosen. Points.
JobPaper a4() {
    const QSizeF size(595, 842);
    return {QStringLiteral("A4"), size, QRectF(QPointF(0, 0), size).adjusted(36, 36, -36, -36)};
}

Error cannotWrite(const QString& path) {
    return failure(hostText("CannotWriteTemporaryBecause")
                       .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
}

Descriptor opened(const QString& path, int flags) {
    return Descriptor(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0600));
}

Descriptor newFile(const QString& path) {
    return opened(path, O_RDWR | O_CREAT | O_EXCL);
}

} // namespace

JobReading::JobReading(DocumentWorker worker, QString folder, const std::optional<JobPaper>& paper,
                       const CancelFlag* cancel)
    : mWorker(std::move(worker))
    , mFolder(std::move(folder))
    , mPaper(paper)
    , mCancel(cancel) {}

Result<JobReading> JobReading::start(const QString& folder, const std::optional<JobPaper>& paper,
                                     const CancelFlag* cancel) {
    Result<DocumentWorker> worker = DocumentWorker::start(DocumentReader::PDF);
    if (!worker)
        return worker.error();
    return JobReading(std::move(*worker), folder, paper, cancel);
}

Result<JobReading::File> JobReading::read(const QString& path, const QString& about) {
    Result<worker::Answer> answer = open(path, about);
    QString pdf = path;
    const auto* kind = answer ? std::get_if<worker::Kind>(&*answer) : nullptr;
    if (kind) {
        const Result<QString> made = converted(path, about, kind->kind);
        if (!made)
            return made.error();
        pdf = *made;
        answer = open(pdf, about);
    }
    if (!answer)
        return answer.error();
    const auto* file = std::get_if<worker::Opened>(&*answer);
    if (!file)
        return failure(hostText("UnknownKind").arg(about));
    mNames << about;
    const bool isDrawn = kind && kind->kind != worker::DocumentKind::PostScript;
    return File{pdf, *file, isDrawn};
}

Result<worker::Answer> JobReading::open(const QString& path, const QString& about) {
    const Descriptor document = opened(path, O_RDONLY);
    if (!document)
        return cannotWrite(path);
    return mWorker.ask(worker::Open(), {about, {document.number()}, {}, mCancel});
}

Result<QString> JobReading::converted(const QString& path, const QString& about,
                                      worker::DocumentKind kind) {
    if (kind == worker::DocumentKind::PostScript)
        return interpreted(path, about, worker::Interpret(), mFolder, mCancel);
    return drawn(path, about, kind);
}

Result<QString> JobReading::drawn(const QString& path, const QString& about,
                                  worker::DocumentKind kind) {
    Result<DocumentWorker> worker = DocumentWorker::start(DocumentReader::Drawing);
    if (!worker)
        return worker.error();
    QString target = path + QStringLiteral(".pdf");
    const Descriptor document = opened(path, O_RDONLY);
    const Descriptor made = newFile(target);
    if (!document || !made)
        return cannotWrite(target);
    const Result<worker::Answer> answer =
        worker->ask(worker::Draw{kind, sent(mPaper.value_or(a4()))},
                    {about, {document.number(), made.number()}, target, mCancel});
    if (!answer)
        return answer.error();
    return target;
}

Result<Done> JobReading::join(const Composition& composition, const QString& target) {
    static_assert(kMaxCopies <= static_cast<int>(worker::kMostRepeats));
    return write(worker::Join{sent(composition.pages), composition.isReversed,
                              static_cast<std::uint32_t>(composition.repeats),
                              sent(composition.paper), composition.fit,
                              static_cast<std::uint32_t>(composition.sets),
                              static_cast<std::uint32_t>(composition.skipped)},
                 target);
}

Result<std::vector<QSizeF>> JobReading::measures(int pages, const QString& scratch) {
    const Result<Done> written = write(worker::Measure(), scratch);
    if (!written)
        return written.error();
    QFile file(scratch);
    const auto count = static_cast<std::size_t>(pages) * 2;
    const auto bytes = static_cast<qint64>(count) * static_cast<qint64>(sizeof(double));
    std::vector<double> sides(count);
    const bool isWhole = file.open(QIODevice::ReadOnly) && file.size() == bytes &&
                         file.read(reinterpret_cast<char*>(sides.data()), bytes) == bytes;
    const bool makesSense = isWhole && std::ranges::all_of(sides, [](double side) {
                                return side >= 0 && side <= worker::kLongestSide;
                            });
    // What makes no sense comes from a worker that a document has taken over.
    if (!makesSense)
        return failure(hostText("DocumentCrashed")
                           .arg(mNames.join(QStringLiteral(", ")), hostText("NoReasonGiven")));
    std::vector<QSizeF> measures;
    for (std::size_t i = 0; i < count; i += 2)
        measures.emplace_back(sides[i], sides[i + 1]);
    return measures;
}

Result<Done> JobReading::write(const worker::Request& request, const QString& target) {
    const Descriptor made = newFile(target);
    if (!made)
        return cannotWrite(target);
    const Result<worker::Answer> answer = mWorker.ask(
        request, {mNames.join(QStringLiteral(", ")), {made.number()}, target, mCancel, mNames});
    if (!answer)
        return answer.error();
    return Done();
}

Result<QString> interpreted(const QString& path, const QString& about,
                            const worker::Interpret& request, const QString& folder,
                            const CancelFlag* cancel) {
    // The folder goes with the one around it.
    QTemporaryDir place(QDir(folder).filePath(QStringLiteral("run")));
    place.setAutoRemove(false);
    const QDir run(place.path());
    if (!place.isValid() ||
        link(QFile::encodeName(path).constData(),
             QFile::encodeName(run.filePath(QStringLiteral("input"))).constData()) != 0)
        return cannotWrite(run.path());
    Result<DocumentWorker> worker = DocumentWorker::start(DocumentReader::Ghostscript);
    if (!worker)
        return worker.error();
    const Descriptor given = opened(run.path(), O_RDONLY | O_DIRECTORY);
    const Result<QByteArray> said =
        worker->run(request, {about, {given.number()}, run.path(), cancel});
    if (!said)
        return said.error();
    if (said->contains(
            QByteArray::fromRawData(worker::kNoPageMade.data(), worker::kNoPageMade.size())))
        return failure(hostText("WithoutPages").arg(about));
    return run.filePath(QStringLiteral("output"));
}

} // namespace labelcut
