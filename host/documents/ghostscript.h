// Documents: Ghostscript as a program beside us, without a shell and without rights.
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

#include "host/core/call_limits.h"
#include "host/core/result.h"

namespace labelcut {

/// One run of Ghostscript.
struct GhostscriptRun {
    /// What the failure's sentence is about, for instance a file's name.
    QString about;
    /// Device and switches of this run; quietness, safety and batch mode are always added.
    QStringList switches;
    /// Files to interpret, in order; absolute.
    QStringList inputs;
    /// A private folder: Ghostscript works there, and leaves its temporary files and messages.
    QString folder;
    /// Bare name of the file that it writes into `folder`.
    QString output;
    /// Documents are programs, and a program need not end.
    std::chrono::milliseconds limit = std::chrono::minutes(2);
    /// Borrowed for the run, which ends soon after it is set; may be null.
    const CancelFlag* cancel = nullptr;
};

/// Runs Ghostscript to its end; it does not outlive this process. Of the environment it gets
/// nothing that names further switches or places to read from.
/// @return the absolute path of what it wrote. The failure is a sentence with Ghostscript's own
/// reason, also when it is not installed or passes the limit; Cancelled when it was stopped.
Result<QString> runGhostscript(const GhostscriptRun& run);

} // namespace labelcut
