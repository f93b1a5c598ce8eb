// The dialog: what is chosen for the job, as it was at one moment, and what has changed since.
#pragma once

#include <QStringList>

#include "host/dialog/job_model.h"

namespace labelcut {

/// Everything about the job that a part of the window may show.
struct JobSnapshot {
    Settings choices;
    Handling handling;
    PageSelection pages;
    QStringList files;
    int pageCount = 0;

    static JobSnapshot of(const JobModel& model);
};

/// What is different between two states of a job with one printer.
struct JobChanges {
    /// Keywords whose choice is another one, or that have one only now or no longer.
    QStringList keywords;
    /// Handling or pages.
    bool amount = false;
    /// The files, or how many labels are in them.
    bool document = false;

    static JobChanges between(const JobSnapshot& before, const JobSnapshot& now);
};

} // namespace labelcut
