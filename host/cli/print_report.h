// The command line: what was printed, in plain words.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include <vector>

#include "host/documents/job_document.h"
#include "host/settings/ppd_calls.h"

namespace labelcut {

/// What a report is about. Everything is borrowed for the call.
struct PrintReport {
    QStringList files;
    const JobDocument* document = nullptr;
    PageRange pages;
    int copies = 1;
    /// The printer for people.
    QString printer;
    /// Where it went: `the file "out.ps"`, `the queue "tape" as job 12`.
    QString target;
    ppd_file_t* ppd = nullptr;
    Settings settings;
};

/// A sentence, then one line a choice with its titles and what is typed for it.
QString toText(const PrintReport& report);

} // namespace labelcut
