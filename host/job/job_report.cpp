// Job: how a job is doing that lies with a queue.
#include "host/job/job_report.h"

#include <array>

#include "host/printers/printer_state.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

const char* textFor(JobState state) {
    switch (state) {
    case JobState::Pending:
        return QT_TRID_NOOP("JobPending");
    case JobState::Held:
        return QT_TRID_NOOP("JobHeld");
    case JobState::Processing:
        return QT_TRID_NOOP("JobProcessing");
    case JobState::Stopped:
        return QT_TRID_NOOP("JobStopped");
    case JobState::Canceled:
        return QT_TRID_NOOP("JobCancelled");
    case JobState::Aborted: // is told as a failure
    case JobState::Completed:
        break;
    }
    return QT_TRID_NOOP("JobCompleted");
}

struct ReasonRow {
    QLatin1String keyword;
    const char* text;
};

/// Keywords of "job-state-reasons" that ask somebody to do something; all others say what the
/// state or the queue says.
constexpr std::array kReasons = {
    ReasonRow{QLatin1String("cups-held-for-authentication"), QT_TRID_NOOP("JobWantsPassword")},
    ReasonRow{QLatin1String("resources-are-not-ready"), QT_TRID_NOOP("JobWantsResources")},
};

bool hasEnded(JobState state) {
    return state == JobState::Canceled || state == JobState::Aborted ||
           state == JobState::Completed;
}

QString queueTrouble(const Queue& queue) {
    const QString state = hostText("QueueTrouble").arg(queue.name, troubleSentence(queue));
    const bool saysWhatToDo = queue.state == PMPrinterState::Stopped || !queue.isAccepting;
    return saysWhatToDo ? state : joinedSentences({state, hostText("SeeToPrinter")});
}

QString troubleOf(const JobStatus& job, const QueueDetails* queue) {
    QStringList sentences;
    for (const ReasonRow& row : kReasons) {
        if (job.stateReasons.contains(row.keyword))
            sentences << hostText(row.text);
    }
    if (job.state == JobState::Stopped)
        sentences << hostText("JobStaysStopped");
    // A job that is held waits for its release, whatever the printer does.
    if (queue && job.state != JobState::Held && needsAttention(queue->queue))
        sentences << queueTrouble(queue->queue);
    return joinedSentences(sentences);
}

bool offers(const QueueDetails* queue, const char* operation) {
    return queue && queue->attributes.value(QStringLiteral("operations-supported"))
                        .split(u',')
                        .contains(QLatin1String(operation));
}

} // namespace

QString JobReport::sentences() const {
    QStringList all{sentence, trouble};
    all.removeAll(QString());
    return joinedSentences(all);
}

JobReport reportOn(const JobStatus& job, const QueueDetails* queue) {
    JobReport report;
    report.state = job.state;
    report.sentence = hostText(textFor(job.state)).arg(job.id);
    report.labelsDone = job.sidesDone;
    if (hasEnded(job.state))
        return report;
    report.trouble = troubleOf(job, queue);
    report.canHold = job.state == JobState::Pending && offers(queue, "Hold-Job");
    report.canRelease = job.state == JobState::Held && offers(queue, "Release-Job");
    return report;
}

} // namespace labelcut
