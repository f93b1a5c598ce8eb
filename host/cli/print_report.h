// The command line: what was printed, in plain words.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include "host/job/order.h"

namespace labelcut {

/// What a report is about. Everything is borrowed for the call.
struct PrintReport {
    const Order* order = nullptr;
    const JobDocument* document = nullptr;
    /// Where it went: `the file "out.ps"`, `the queue "tape" as job 12`.
    QString target;
    ppd_file_t* ppd = nullptr;
};

/// A sentence, then one line a choice with its titles and what is typed for it.
QString toText(const PrintReport& report);

/// Complains of every file that was damaged.
void complainOfRepairs(const JobDocument& document);

} // namespace labelcut
