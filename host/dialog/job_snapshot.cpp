// The dialog: what is chosen for the job, as it was at one moment, and what has changed since.
#include "host/dialog/job_snapshot.h"

namespace labelcut {

JobSnapshot JobSnapshot::of(const JobModel& model) {
    return {model.marks(), model.handling(), model.pages(), model.files(), model.pageCount()};
}

JobChanges JobChanges::between(const JobSnapshot& before, const JobSnapshot& now) {
    JobChanges changes;
    changes.keywords = keywordsOf(differing(now.choices, before.choices)) +
                       keywordsOf(differing(before.choices, now.choices));
    changes.keywords.removeDuplicates();
    changes.amount = before.handling != now.handling || before.pages != now.pages;
    changes.document = before.files != now.files || before.pageCount != now.pageCount;
    return changes;
}

} // namespace labelcut
