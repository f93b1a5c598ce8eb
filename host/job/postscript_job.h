// Job: PostScript for the printer, made without any print service.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/documents/job_document.h"
#include "host/documents/paper.h"

namespace labelcut {

/// A job for a printer that is known by its PPD only.
struct PostScriptJob {
    /// Borrowed; the marked choices are what is printed with.
    ppd_file_t* ppd = nullptr;
    /// Borrowed.
    const JobDocument* document = nullptr;
    QString title;
    QString user;
    /// 1 or more. The printer repeats the pages unless its PPD says that it cannot.
    int copies = 1;
    /// What of the document is printed, and how.
    Composition composition;
    /// Borrowed; once it is set the job ends soon, and nothing is written. May be null.
    const CancelFlag* cancel = nullptr;
};

/// Writes the job as PostScript to `path`; see writeWhole() for what a failure leaves there.
///
/// The code of every marked choice stands between its feature comments in the section that the
/// PPD's OrderDependency names: prolog, document setup or each page's setup; job control and
/// exit-server code stand in front of everything. The pages themselves leave the paper to the PPD.
/// @return bytes written. The failure is a sentence for the user.
Result<qint64> writePostScript(const PostScriptJob& job, const QString& path);

} // namespace labelcut
