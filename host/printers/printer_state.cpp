// Printers: how a queue is doing, in words.
#include "host/printers/printer_state.h"

#include <QStringList>

#include <algorithm>
#include <array>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

struct ReasonRow {
    QLatin1String keyword; ///< Without the severity at its end.
    const char* text;      ///< Key of a text without a full stop.
};

/// Keywords of RFC 8011, 5.4.12, and those that the print service adds.
constexpr std::array kReasons = {
    ReasonRow{QLatin1String("media-needed"), QT_TRID_NOOP("MediaNeeded")},
    ReasonRow{QLatin1String("media-empty"), QT_TRID_NOOP("MediaEmpty")},
    ReasonRow{QLatin1String("media-low"), QT_TRID_NOOP("MediaLow")},
    ReasonRow{QLatin1String("media-jam"), QT_TRID_NOOP("MediaJam")},
    ReasonRow{QLatin1String("cover-open"), QT_TRID_NOOP("CoverOpen")},
    ReasonRow{QLatin1String("door-open"), QT_TRID_NOOP("DoorOpen")},
    ReasonRow{QLatin1String("interlock-open"), QT_TRID_NOOP("InterlockOpen")},
    ReasonRow{QLatin1String("input-tray-missing"), QT_TRID_NOOP("InputTrayMissing")},
    ReasonRow{QLatin1String("output-tray-missing"), QT_TRID_NOOP("OutputTrayMissing")},
    ReasonRow{QLatin1String("output-area-full"), QT_TRID_NOOP("OutputFull")},
    ReasonRow{QLatin1String("output-area-almost-full"), QT_TRID_NOOP("OutputNearlyFull")},
    ReasonRow{QLatin1String("marker-supply-empty"), QT_TRID_NOOP("InkEmpty")},
    ReasonRow{QLatin1String("marker-supply-low"), QT_TRID_NOOP("InkLow")},
    ReasonRow{QLatin1String("marker-waste-full"), QT_TRID_NOOP("WasteFull")},
    ReasonRow{QLatin1String("marker-waste-almost-full"), QT_TRID_NOOP("WasteNearlyFull")},
    ReasonRow{QLatin1String("toner-empty"), QT_TRID_NOOP("TonerEmpty")},
    ReasonRow{QLatin1String("toner-low"), QT_TRID_NOOP("TonerLow")},
    ReasonRow{QLatin1String("offline"), QT_TRID_NOOP("Offline")},
    ReasonRow{QLatin1String("shutdown"), QT_TRID_NOOP("SwitchedOff")},
    ReasonRow{QLatin1String("connecting-to-device"), QT_TRID_NOOP("Connecting")},
    ReasonRow{QLatin1String("timed-out"), QT_TRID_NOOP("TimedOut")},
    ReasonRow{QLatin1String("stopping"), QT_TRID_NOOP("Stopping")},
    ReasonRow{QLatin1String("stopped-partly"), QT_TRID_NOOP("StoppedPartly")},
    ReasonRow{QLatin1String("spool-area-full"), QT_TRID_NOOP("SpoolFull")},
    ReasonRow{QLatin1String("cups-missing-filter"), QT_TRID_NOOP("DriverIncomplete")},
    ReasonRow{QLatin1String("cups-insecure-filter"), QT_TRID_NOOP("DriverInsecure")},
    ReasonRow{QLatin1String("cups-waiting-for-job-completed"), QT_TRID_NOOP("FinishingJob")},
};

/// What services say of a state besides the state itself, in the words of their own language.
struct StateWords {
    PMPrinterState state;
    QLatin1String words;
};
constexpr std::array kStateWords = {
    StateWords{PMPrinterState::Idle, QLatin1String("idle")},
    StateWords{PMPrinterState::Idle, QLatin1String("ready")},
    StateWords{PMPrinterState::Processing, QLatin1String("printing")},
    StateWords{PMPrinterState::Processing, QLatin1String("processing")},
    StateWords{PMPrinterState::Stopped, QLatin1String("paused")},
    StateWords{PMPrinterState::Stopped, QLatin1String("stopped")},
};

constexpr std::array kSeverities = {QLatin1String("-error"), QLatin1String("-warning"),
                                    QLatin1String("-report")};

QString withoutSeverity(const QString& reason) {
    for (const QLatin1String severity : kSeverities)
        if (reason.endsWith(severity))
            return reason.chopped(severity.size());
    return reason;
}

/// What the state itself says already.
bool isState(const QString& reason) {
    const QString bare = withoutSeverity(reason);
    return bare == u"none" || bare == u"paused" || bare == u"moving-to-paused";
}

/// Whether the state is all that the message says, as "Paused" of a paused queue.
bool repeatsState(QString message, PMPrinterState state) {
    message = message.simplified();
    if (message.endsWith(u'.'))
        message.chop(1);
    return std::ranges::any_of(kStateWords, [&](const StateWords& row) {
        return row.state == state && message.compare(row.words, Qt::CaseInsensitive) == 0;
    });
}

QString asSentence(QString text) {
    text = text.simplified();
    const bool isEnded = text.isEmpty() || QStringLiteral(".!?。！？").contains(text.back());
    return isEnded ? text : hostText("WithFullStop").arg(text);
}

QString ownState(const Queue& queue) {
    const bool isPaused = queue.state == PMPrinterState::Stopped;
    if (isPaused)
        return hostText(queue.isAccepting ? "Paused" : "PausedAndRejecting");
    if (!queue.isAccepting)
        return hostText("TakesNoJobs");
    return queue.state == PMPrinterState::Processing ? hostText("PrintingNow") : QString();
}

QStringList sentencesBehind(const QString& first, const Queue& queue) {
    QStringList sentences{first};
    for (const QString& reason : queue.stateReasons)
        if (!isState(reason))
            sentences << asSentence(reasonText(reason));
    if (!repeatsState(queue.stateMessage, queue.state))
        sentences << asSentence(queue.stateMessage);
    sentences.removeAll(QString());
    sentences.removeDuplicates();
    return sentences;
}

} // namespace

QString reasonText(const QString& reason) {
    const QString bare = withoutSeverity(reason);
    const auto row = std::ranges::find(kReasons, bare, &ReasonRow::keyword);
    if (row != kReasons.end())
        return hostText(row->text);
    QString words = bare;
    words.replace(u'-', u' ').replace(u'_', u' ');
    return hostText("PrinterSays").arg(words.simplified());
}

QString stateSentence(const Queue& queue) {
    const QStringList sentences = sentencesBehind(ownState(queue), queue);
    return sentences.isEmpty() ? hostText("Ready") : joinedSentences(sentences);
}

QString troubleSentence(const Queue& queue) {
    const bool standsStill = queue.state == PMPrinterState::Stopped || !queue.isAccepting;
    return joinedSentences(sentencesBehind(standsStill ? ownState(queue) : QString(), queue));
}

bool needsAttention(const Queue& queue) {
    return queue.state == PMPrinterState::Stopped || !queue.isAccepting ||
           std::ranges::any_of(queue.stateReasons, [](const QString& reason) {
               return reason.endsWith(kSeverities.front());
           });
}

QString goneSentence(const QString& name) {
    return hostText("PrinterGone").arg(name);
}

} // namespace labelcut
