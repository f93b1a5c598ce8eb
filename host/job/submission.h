// Job: the way of one job to a queue.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/service/cups_connection.h"
#include "host/settings/setting.h"

namespace labelcut {

/// Looks at the queue's PPD as it is right before the job is made. @return why the job must not be
/// sent like this, or nothing. It runs on the thread that submits and must own all that it uses.
using PpdCheck = std::function<std::optional<Error>(const QByteArray& ppd)>;

/// A check that each of the job's PPD choices is still there; the failure names all that are not.
/// @param queue     for the sentences.
/// @param settings  PPD keywords only, none of the print service's own options.
PpdCheck choicesStillThere(const QString& queue, const Settings& settings);

struct JobToSend {
    JobRequest request;
    /// Absolute; must stay until the job was submitted.
    QString documentPath;
    /// Empty: the PPD is not fetched.
    PpdCheck checkPpd;
};

struct SubmissionLimits {
    int request = 10'000;   ///< Milliseconds for each request but the document.
    int document = 600'000; ///< Milliseconds for sending the document.
};

/// What a submission tells on its way, on its own thread; either may be empty.
struct SubmissionReports {
    std::function<void(int job)> created;
    SendProgress progress;
};

/// Checks the PPD, makes the job and sends its document; blocks, so call it on a thread that may
/// wait. The only way by which a job gets into a queue.
/// @param cancel  borrowed for the call, which ends soon after it is set; may be null.
/// @return the job's id, 1 or more. The failure is a sentence for the user; the job is then gone
///         again, or the sentence says that it may still be there.
Result<int> submit(const CupsConnection& service, const JobToSend& job,
                   const SubmissionLimits& limits, const CancelFlag* cancel,
                   const SubmissionReports& reports = {});

} // namespace labelcut
