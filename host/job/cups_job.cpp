// Job: its way to a print queue.
#include "host/job/cups_job.h"

#include <QFile>

#include <algorithm>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

JobRequest requestFor(const CupsJob& job) {
    JobRequest request;
    request.queue = job.queue;
    request.title = job.title;
    request.user = job.user;
    request.documentFormat = QStringLiteral("application/pdf");
    request.copies = job.copies;
    if (!job.pages.isEverything())
        request.pageRanges.emplace_back(job.pages.first,
                                        std::min(job.pages.last, job.document->pages()));
    for (const Setting& setting : job.settings)
        request.options.emplace_back(setting.keyword, setting.choice);
    return request;
}

Result<int> sendToQueue(const CupsConnection& service, const CupsJob& job, const CallLimits& limits,
                        const SendProgress& progress) {
    if (job.document->pagesIn(job.pages) == 0)
        return failure(noSuchPage(job.pages, job.document->pages()));
    QFile document(job.document->pdf());
    if (!document.open(QIODevice::ReadOnly))
        return failure(hostText("CannotRead").arg(document.fileName(), document.errorString()));
    const JobRequest request = requestFor(job);
    if (limits.cancel && limits.cancel->isCancelled())
        return cancelled();
    // Not to be cancelled: a job whose number never arrives would stay behind in the queue.
    Result<int> id = service.createJob(request, {limits.timeout, nullptr});
    if (!id)
        return id;
    const Result<Done> sent = service.sendDocument(*id, request, document, progress, limits);
    if (!sent)
        return sent.error();
    return id;
}

} // namespace labelcut
