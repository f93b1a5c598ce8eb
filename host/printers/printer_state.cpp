// Printers: how a queue is doing, in words.
#include "host/printers/printer_state.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace labelcut {

namespace {

struct ReasonRow {
    QLatin1String keyword; ///< Without the severity at its end.
    QLatin1String text;
};

/// Keywords of RFC 8011, 5.4.12, and those that the print service adds.
constexpr std::array kReasons = {
    ReasonRow{QLatin1String("media-needed"), QLatin1String("Put in paper or tape")},
    ReasonRow{QLatin1String("media-empty"), QLatin1String("Paper or tape is used up")},
    ReasonRow{QLatin1String("media-low"), QLatin1String("Paper or tape is nearly used up")},
    ReasonRow{QLatin1String("media-jam"), QLatin1String("Paper or tape is jammed")},
    ReasonRow{QLatin1String("cover-open"), QLatin1String("A cover is open")},
    ReasonRow{QLatin1String("door-open"), QLatin1String("A door is open")},
    ReasonRow{QLatin1String("interlock-open"), QLatin1String("A safety switch is open")},
    ReasonRow{QLatin1String("input-tray-missing"), QLatin1String("An input tray is missing")},
    ReasonRow{QLatin1String("output-tray-missing"), QLatin1String("An output tray is missing")},
    ReasonRow{QLatin1String("output-area-full"), QLatin1String("The output tray is full")},
    ReasonRow{QLatin1String("output-area-almost-full"),
              QLatin1String("The output tray is nearly full")},
    ReasonRow{QLatin1String("marker-supply-empty"), QLatin1String("Ink or ribbon is used up")},
    ReasonRow{QLatin1String("marker-supply-low"), QLatin1String("Ink or ribbon is nearly used up")},
    ReasonRow{QLatin1String("marker-waste-full"), QLatin1String("The waste container is full")},
    ReasonRow{QLatin1String("marker-waste-almost-full"),
              QLatin1String("The waste container is nearly full")},
    ReasonRow{QLatin1String("toner-empty"), QLatin1String("Toner is used up")},
    ReasonRow{QLatin1String("toner-low"), QLatin1String("Toner is nearly used up")},
    ReasonRow{QLatin1String("offline"), QLatin1String("The printer is switched off or offline")},
    ReasonRow{QLatin1String("shutdown"), QLatin1String("The printer is switched off")},
    ReasonRow{QLatin1String("connecting-to-device"),
              QLatin1String("The print service is connecting to the printer")},
    ReasonRow{QLatin1String("timed-out"), QLatin1String("The printer does not answer")},
    ReasonRow{QLatin1String("stopping"), QLatin1String("The printer is stopping")},
    ReasonRow{QLatin1String("stopped-partly"), QLatin1String("Some of the printers are stopped")},
    ReasonRow{QLatin1String("spool-area-full"),
              QLatin1String("The print service has no room for jobs")},
    ReasonRow{QLatin1String("cups-missing-filter"),
              QLatin1String("The printer's driver is not installed in full")},
    ReasonRow{QLatin1String("cups-insecure-filter"),
              QLatin1String("The printer's driver may be changed by others and is not used")},
    ReasonRow{QLatin1String("cups-waiting-for-job-completed"),
              QLatin1String("The printer is finishing a job")},
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

QString asSentence(QString text) {
    text = text.simplified();
    const bool isEnded = text.endsWith(u'.') || text.endsWith(u'!') || text.endsWith(u'?');
    return text.isEmpty() || isEnded ? text : text + u'.';
}

QString ownState(const Queue& queue) {
    const bool isPaused = queue.state == PMPrinterState::Stopped;
    if (isPaused && !queue.isAccepting)
        return QStringLiteral("Paused, and takes no jobs: choose another printer, or have this one "
                              "resumed and let it accept jobs again.");
    if (isPaused)
        return QStringLiteral("Paused: jobs are held until it is resumed.");
    if (!queue.isAccepting)
        return QStringLiteral("Takes no jobs: choose another printer, or let this one accept jobs "
                              "again.");
    return queue.state == PMPrinterState::Processing
               ? QStringLiteral("Printing: jobs wait for their turn.")
               : QString();
}

} // namespace

QString reasonText(const QString& reason) {
    const QString bare = withoutSeverity(reason);
    const auto row = std::ranges::find(kReasons, bare, &ReasonRow::keyword);
    if (row != kReasons.end())
        return row->text;
    QString words = bare;
    words.replace(u'-', u' ').replace(u'_', u' ');
    return QStringLiteral("The printer says: %1").arg(words.simplified());
}

QString stateSentence(const Queue& queue) {
    QStringList sentences{ownState(queue)};
    for (const QString& reason : queue.stateReasons)
        if (!isState(reason))
            sentences << asSentence(reasonText(reason));
    sentences << asSentence(queue.stateMessage);
    sentences.removeAll(QString());
    sentences.removeDuplicates();
    return sentences.isEmpty() ? QStringLiteral("Ready.") : sentences.join(u' ');
}

bool needsAttention(const Queue& queue) {
    return queue.state == PMPrinterState::Stopped || !queue.isAccepting ||
           std::ranges::any_of(queue.stateReasons, [](const QString& reason) {
               return reason.endsWith(kSeverities.front());
           });
}

QString goneSentence(const QString& name) {
    return QStringLiteral("The printer \"%1\" is gone: nothing can be printed there. Choose "
                          "another one; your choices stay as far as it has them.")
        .arg(name);
}

} // namespace labelcut
