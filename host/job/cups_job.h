// Job: its way to a print queue.
#pragma once

#include <QString>

#include <vector>

#include "host/documents/job_document.h"
#include "host/documents/paper.h"
#include "host/service/cups_connection.h"
#include "host/settings/ppd_calls.h"

namespace labelcut {

/// A job for a queue of a print service.
struct CupsJob {
    QString queue;
    /// Borrowed.
    const JobDocument* document = nullptr;
    /// What the job says of its choices; see jobSettings().
    Settings settings;
    QString title;
    QString user;
    /// 1 or more.
    int copies = 1;
    PageRange pages;
};

/// The job as the print service is asked for it.
JobRequest requestFor(const CupsJob& job);

/// Makes the job and sends its document; call it on a thread that may wait.
/// @return the job's id. The failure is a sentence for the user; the job is then gone again, or
/// the sentence says that it may still be there.
Result<int> sendToQueue(const CupsConnection& service, const CupsJob& job, const CallLimits& limits,
                        const SendProgress& progress = {});

} // namespace labelcut
