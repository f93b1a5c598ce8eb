// What people are told about a print service that fails, in the language of the environment.
#include "host/service/print_errors.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace labelcut {

namespace {

RequestSubject oddSubject() {
    RequestSubject subject;
    subject.service = QStringLiteral("host%2:631");
    subject.timeout = 2'500;
    subject.queue = QStringLiteral("a%1b%2");
    subject.job = 17;
    subject.documentType = QStringLiteral("text/%1");
    return subject;
}

/// The failure of each kind, by whatever makes it.
Error errorOf(ErrorKind kind) {
    if (kind == ErrorKind::DocumentUnreadable)
        return printerrors::documentUnreadable(QStringLiteral("%1!"));
    if (kind == ErrorKind::Other)
        return printerrors::fromIpp(IPP_STATUS_ERROR_INTERNAL, QStringLiteral("Oh %2."),
                                    oddSubject());
    return printerrors::about(kind, oddSubject());
}

struct Row {
    ErrorKind kind;
    const char* key;
    const char* german;
};

const Row kRows[] = {
    {ErrorKind::NoService, "NoService",
     "Bei host%2:631 gibt es keinen Druckdienst. Starten Sie dort CUPS („systemctl start cups“) "
     "oder nennen Sie in CUPS_SERVER einen anderen."},
    {ErrorKind::Unreachable, "Unreachable",
     "Der Druckdienst bei host%2:631 war innerhalb von 2.5 Sekunden nicht zu erreichen. Prüfen Sie "
     "das Netzwerk und den Namen des Dienstes oder lassen Sie mehr Zeit."},
    {ErrorKind::SilentServer, "SilentServer",
     "Der Druckdienst bei host%2:631 hat innerhalb von 2.5 Sekunden nicht geantwortet. Er ist "
     "vielleicht überlastet oder hängt: Versuchen Sie es später erneut, starten Sie ihn neu oder "
     "lassen Sie mehr Zeit."},
    {ErrorKind::ServerGone, "ServerGone",
     "Der Druckdienst bei host%2:631 hat die Verbindung beendet, bevor er geantwortet hat. Prüfen "
     "Sie, ob er läuft, und versuchen Sie es erneut."},
    {ErrorKind::NotAPrintService, "NotAPrintService",
     "Was bei host%2:631 antwortet, ist kein Druckdienst. Prüfen Sie die Adresse in CUPS_SERVER."},
    {ErrorKind::Cancelled, "Cancelled", "Abgebrochen; es wird nichts gedruckt."},
    {ErrorKind::NoSuchQueue, "NoSuchQueue",
     "Der Druckdienst bei host%2:631 hat keine Warteschlange „a%1b%2“. „lpstat -e“ zeigt, welche "
     "es gibt."},
    {ErrorKind::NoSuchJob, "NoSuchJob",
     "Der Druckdienst bei host%2:631 hat keinen Auftrag 17 (mehr). Vielleicht wurde er gedruckt "
     "oder entfernt: „lpstat -W all“ zeigt die Aufträge."},
    {ErrorKind::QueueWithoutPpd, "QueueWithoutPpd",
     "Die Warteschlange „a%1b%2“ hat keine Druckerbeschreibung (PPD), sodass ihre Optionen nicht "
     "bekannt sind. Geben Sie ihr eine („lpadmin -p a%1b%2 -P DATEI“) oder öffnen Sie statt der "
     "Warteschlange eine PPD-Datei."},
    {ErrorKind::Rejecting, "Rejecting",
     "Die Warteschlange „a%1b%2“ nimmt zurzeit keine neuen Aufträge an. Lassen Sie sie wieder "
     "Aufträge annehmen („cupsaccept a%1b%2“) oder wählen Sie eine andere."},
    {ErrorKind::AuthenticationNeeded, "AuthenticationNeeded",
     "Der Druckdienst bei host%2:631 erlaubt das nur nach einer Anmeldung, die von hier aus nicht "
     "möglich ist. Bitten Sie die Verwaltung um Erlaubnis oder wählen Sie einen anderen Drucker."},
    {ErrorKind::FormatNotSupported, "FormatNotSupported",
     "Der Druckdienst bei host%2:631 kann Dokumente vom Typ text/%1 nicht drucken. Sichern Sie das "
     "Dokument als PDF oder installieren Sie den fehlenden Filter."},
    {ErrorKind::DocumentUnreadable, "DocumentUnreadable",
     "Das Dokument ließ sich beim Senden nicht lesen (%1!), es wurde nichts gedruckt. Prüfen Sie "
     "die Datei und drucken Sie erneut."},
    {ErrorKind::Other, "Refused",
     "Der Druckdienst bei host%2:631 hat die Anfrage abgelehnt: Oh %2 "
     "(server-error-internal-error). Mehr steht in seinem Fehlerprotokoll."},
};

QString tableText(const char* key) {
    QFile file(QStringLiteral(LABELCUT_SERVICE_TEXTS));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject texts =
        QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("texts")).toObject();
    return texts.value(QLatin1String(key))
        .toObject()
        .value(qEnvironmentVariable("LANGUAGE"))
        .toString();
}

} // namespace

TEST(PrintErrors, HaveASentenceOfTheLanguageForEveryKind) {
    // No service has a part in an edge that is lost.
    ASSERT_EQ(std::size(kRows) + 1, std::size_t(ErrorKind::Other) + 1) << "a row for every kind";
    for (const Row& row : kRows) {
        const Error error = errorOf(row.kind);
        EXPECT_EQ(error.kind, row.kind);
        // Between its places the sentence is the table's.
        const QString expected = tableText(row.key);
        ASSERT_FALSE(expected.isEmpty()) << row.key;
        qsizetype from = 0;
        for (const QString& part : expected.split(QRegularExpression(QStringLiteral("%\\d")))) {
            const qsizetype found = error.sentence.indexOf(part, from);
            EXPECT_GE(found, from) << row.key << ": " << error.sentence.toStdString();
            from = found + part.size();
        }
    }
}

TEST(PrintErrors, SayOfAnUnnamedTypeThatItIsThisOne) {
    RequestSubject subject = oddSubject();
    subject.documentType = QString();
    EXPECT_EQ(printerrors::about(ErrorKind::FormatNotSupported, subject).sentence,
              tableText("TypeNotSupported").arg(subject.service));
}

TEST(PrintErrors, BeginWithWhatHasBecomeOfTheJob) {
    struct Fate {
        JobFate fate;
        const char* key;
    };
    const RequestSubject subject = oddSubject();
    for (const Row& row : kRows) {
        const Error failure = errorOf(row.kind);
        for (const auto& [fate, key] :
             {Fate{JobFate::Gone, "NothingPrinted"}, Fate{JobFate::Empty, "EmptyJobMayRemain"},
              Fate{JobFate::Unfinished, "JobMayRemain"}, Fate{JobFate::Begun, "JobBegun"},
              Fate{JobFate::Unknown, "JobMayBePrinted"}, Fate{JobFate::Sent, "JobSentUnseen"}}) {
            const Error told = printerrors::withFate(failure, fate, subject);
            EXPECT_EQ(told.kind, row.kind);
            const bool saysSo =
                fate == JobFate::Gone &&
                (row.kind == ErrorKind::Cancelled || row.kind == ErrorKind::DocumentUnreadable);
            const QString begin =
                saysSo ? failure.sentence : tableText(key).section(QStringLiteral("%"), 0, 0);
            EXPECT_TRUE(told.sentence.startsWith(begin)) << told.sentence.toStdString();
        }
    }
}

TEST(PrintErrors, NeverAskToTryAgainWhereAJobMayBePrinted) {
    const RequestSubject subject = oddSubject();
    for (const auto& [kind, advice] : {std::pair(ErrorKind::SilentServer, "SilentServerWas"),
                                       std::pair(ErrorKind::ServerGone, "ServerGoneWas"),
                                       std::pair(ErrorKind::Cancelled, "CancelledWas")}) {
        const Error failure = printerrors::about(kind, subject);
        for (const JobFate fate : {JobFate::Begun, JobFate::Unknown, JobFate::Sent}) {
            const QString sentence = printerrors::withFate(failure, fate, subject).sentence;
            EXPECT_FALSE(sentence.contains(failure.sentence)) << sentence.toStdString();
            const QString end =
                tableText(advice).section(QRegularExpression(QStringLiteral("%.")), -1);
            EXPECT_TRUE(sentence.endsWith(end)) << sentence.toStdString();
        }
    }
}

TEST(PrintErrors, NameTheSocketThatNobodyServes) {
    RequestSubject subject;
    subject.service = QStringLiteral("/run/%1.sock");
    EXPECT_EQ(printerrors::nothingAtSocket(subject).sentence,
              tableText("NothingAtSocket").arg(subject.service));
}

TEST(GermanPrintErrors, AreGermanWithNamesAsTheyAre) {
    for (const Row& row : kRows)
        EXPECT_EQ(errorOf(row.kind).sentence.toStdString(), row.german);
}

TEST(GermanPrintErrors, CountSeconds) {
    RequestSubject subject = oddSubject();
    for (const auto& [milliseconds, words] :
         {std::pair(1'000, "1 Sekunde "), std::pair(300, "0.3 Sekunden "),
          std::pair(10'000, "10 Sekunden ")}) {
        subject.timeout = milliseconds;
        const QString sentence = printerrors::about(ErrorKind::Unreachable, subject).sentence;
        EXPECT_TRUE(sentence.contains(QStringLiteral("innerhalb von ") + QLatin1String(words)))
            << sentence.toStdString();
    }
}

} // namespace labelcut
