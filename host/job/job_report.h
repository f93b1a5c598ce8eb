// Job: how a job is doing that lies with a queue, in figures and in words.
#pragma once

#include <QString>

#include <optional>

#include "host/service/cups_connection.h"

namespace labelcut {

/// One look at a job.
struct JobReport {
    /// Nothing: it cannot be seen at the moment.
    std::optional<JobState> state;
    /// What happens to the job, in one sentence; empty while it cannot be seen.
    QString sentence;
    /// What keeps it from coming out, and what to do, in whole sentences; empty: nothing.
    QString trouble;
    /// How many of its labels have come out, as far as the queue counts them; 0: it has not said.
    int labelsDone = 0;
    /// Whether it waits and the service would keep it back, or keeps it and would let it go.
    bool canHold = false;
    bool canRelease = false;

    /// Both of the above, one behind the other.
    QString sentences() const;
    bool operator==(const JobReport&) const = default;
};

/// @param queue  the job's; null: it is not known how that is doing.
JobReport reportOn(const JobStatus& job, const QueueDetails* queue);

} // namespace labelcut
