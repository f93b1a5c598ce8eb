// Job: the way of one job to a queue.
#include "host/job/submission.h"

#include <QFile>
#include <QFileInfo>

#include "host/core/failure.h"
#include "host/printers/printer_source.h"
#include "host/settings/setting_match.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

Error unreadable(const QString& path, const QString& reason) {
    return {ErrorKind::DocumentUnreadable, hostText("FileUnreadable").arg(path, reason)};
}

std::optional<Error> checkPpd(const CupsConnection& service, const JobToSend& job,
                              const CallLimits& limits) {
    if (!job.checkPpd)
        return std::nullopt;
    const Result<QByteArray> ppd = service.fetchPpd(job.request.queue, limits);
    return ppd ? job.checkPpd(*ppd) : ppd.error();
}

} // namespace

PpdCheck choicesStillThere(const QString& queue, const Settings& settings) {
    return [queue, settings](const QByteArray& bytes) -> std::optional<Error> {
        const Result<ppd::File> ppd = openPpd(bytes, queue);
        if (!ppd)
            return ppd.error();
        const SettingMatch match = matchSettings(ppd->get(), settings);
        if (match.missing.empty())
            return std::nullopt;
        return failure(hostText("ChoicesGone")
                           .arg(queue, joinedSentences(describe(ppd->get(), match.missing))));
    };
}

Result<int> submit(const CupsConnection& service, const JobToSend& job,
                   const SubmissionLimits& limits, const CancelFlag* cancel,
                   const SubmissionReports& reports) {
    if (const auto problem = checkPpd(service, job, {limits.request, cancel}))
        return *problem;
    QFile document(job.documentPath);
    if (!QFileInfo(job.documentPath).isFile())
        return unreadable(job.documentPath, hostText("NoRegularFile"));
    if (!document.open(QIODevice::ReadOnly))
        return unreadable(job.documentPath, document.errorString());
    if (isCancelled(cancel))
        return cancelled();
    // Not to be cancelled: a job whose number never arrives would stay behind in the queue.
    const Result<int> id = service.createJob(job.request, {limits.request, nullptr});
    if (!id)
        return id;
    if (reports.created)
        reports.created(*id);
    const Result<Done> sent = service.sendDocument(*id, job.request, document, reports.progress,
                                                   {limits.document, cancel});
    if (!sent)
        return sent.error();
    return id;
}

} // namespace labelcut
