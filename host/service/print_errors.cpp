// Print service: the sentences for what can go wrong with a print service.
#include "host/service/print_errors.h"

#include <QLocale>

#include <algorithm>
#include <array>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut::printerrors {

namespace {

QString service(const RequestSubject& subject) {
    return subject.service;
}

/// "1 second", "2.5 seconds".
QString timeLimit(const RequestSubject& subject) {
    const QString number =
        QLocale().toString(subject.timeout / 1000.0, 'f', QLocale::FloatingPointShortest);
    return hostText(subject.timeout == 1000 ? "OneSecond" : "ManySeconds").arg(number);
}

QString queue(const RequestSubject& subject) {
    return subject.queue;
}

QString job(const RequestSubject& subject) {
    return QString::number(subject.job);
}

QString documentType(const RequestSubject& subject) {
    return subject.documentType;
}

/// What a sentence says of the request: in its places %1 and %2.
using Detail = QString (*)(const RequestSubject&);

struct Row {
    ErrorKind kind;
    const char* text;
    Detail first = nullptr;
    Detail second = nullptr;
};

constexpr std::array kRows = {
    Row{ErrorKind::NoService, QT_TRID_NOOP("NoService"), service},
    Row{ErrorKind::Unreachable, QT_TRID_NOOP("Unreachable"), service, timeLimit},
    Row{ErrorKind::SilentServer, QT_TRID_NOOP("SilentServer"), service, timeLimit},
    Row{ErrorKind::ServerGone, QT_TRID_NOOP("ServerGone"), service},
    Row{ErrorKind::NotAPrintService, QT_TRID_NOOP("NotAPrintService"), service},
    Row{ErrorKind::Cancelled, QT_TRID_NOOP("Cancelled")},
    Row{ErrorKind::NoSuchQueue, QT_TRID_NOOP("NoSuchQueue"), service, queue},
    Row{ErrorKind::NoSuchJob, QT_TRID_NOOP("NoSuchJob"), service, job},
    Row{ErrorKind::QueueWithoutPpd, QT_TRID_NOOP("QueueWithoutPpd"), queue},
    Row{ErrorKind::Rejecting, QT_TRID_NOOP("Rejecting"), queue},
    Row{ErrorKind::AuthenticationNeeded, QT_TRID_NOOP("AuthenticationNeeded"), service},
    Row{ErrorKind::FormatNotSupported, QT_TRID_NOOP("FormatNotSupported"), service, documentType},
};

QString filled(const Row& row, const RequestSubject& subject) {
    const QString text = hostText(row.text);
    if (row.second)
        return text.arg(row.first(subject), row.second(subject));
    return row.first ? text.arg(row.first(subject)) : text;
}

Error refused(const RequestSubject& subject, const QString& words) {
    return {ErrorKind::Other, hostText("Refused").arg(subject.service, words)};
}

/// What happened, without the advice to try again, which is none once a job may be printed.
QString cause(const Error& failure, const RequestSubject& subject) {
    switch (failure.kind) {
    case ErrorKind::SilentServer:
        return hostText("SilentServerWas").arg(subject.service, timeLimit(subject));
    case ErrorKind::ServerGone:
        return hostText("ServerGoneWas").arg(subject.service);
    case ErrorKind::Cancelled:
        return hostText("CancelledWas").arg(subject.service);
    default:
        return failure.sentence;
    }
}

/// Whether the sentence itself says that nothing is printed.
bool saysThatNothingIsPrinted(ErrorKind kind) {
    return kind == ErrorKind::Cancelled || kind == ErrorKind::DocumentUnreadable;
}

QString sentenceOf(const Error& failure, JobFate fate, const RequestSubject& subject) {
    switch (fate) {
    case JobFate::Gone:
        return saysThatNothingIsPrinted(failure.kind)
                   ? failure.sentence
                   : hostText("NothingPrinted").arg(failure.sentence);
    case JobFate::Empty:
        return hostText("EmptyJobMayRemain").arg(failure.sentence, subject.queue);
    case JobFate::Unfinished:
        return hostText("JobMayRemain").arg(failure.sentence, job(subject));
    case JobFate::Begun:
        return hostText("JobBegun").arg(cause(failure, subject), job(subject));
    case JobFate::Unknown:
        return hostText("JobMayBePrinted")
            .arg(cause(failure, subject), job(subject), subject.queue);
    case JobFate::Sent:
        break;
    }
    return hostText("JobSentUnseen").arg(cause(failure, subject), job(subject));
}

} // namespace

Error about(ErrorKind kind, const RequestSubject& subject) {
    if (kind == ErrorKind::FormatNotSupported && subject.documentType.isEmpty())
        return {kind, hostText("TypeNotSupported").arg(subject.service)};
    const auto row = std::ranges::find(kRows, kind, &Row::kind);
    return row == kRows.end() ? refused(subject, QString()) : Error{kind, filled(*row, subject)};
}

Error noService(const RequestSubject& subject, const QString& reason) {
    if (reason.isEmpty())
        return about(ErrorKind::NoService, subject);
    return {ErrorKind::NoService, hostText("NoServiceBecause").arg(subject.service, reason)};
}

Error nothingAtSocket(const RequestSubject& subject) {
    return {ErrorKind::NoService, hostText("NothingAtSocket").arg(subject.service)};
}

Error documentUnreadable(const QString& reason) {
    return {ErrorKind::DocumentUnreadable, hostText("DocumentUnreadable").arg(reason)};
}

Error noServerNamed(const RequestSubject& subject) {
    return {ErrorKind::NoService, hostText("NoServerNamed").arg(subject.service)};
}

Error tooMuch(const RequestSubject& subject) {
    return {ErrorKind::NotAPrintService, hostText("AnswerTooMuch").arg(subject.service)};
}

Error notAsked(const RequestSubject& subject) {
    return {ErrorKind::NotAPrintService, hostText("AnswerNotAsked").arg(subject.service)};
}

Error withFate(const Error& failure, JobFate fate, const RequestSubject& subject) {
    return {failure.kind, sentenceOf(failure, fate, subject)};
}

Error fromHttp(http_status_t status, const RequestSubject& subject) {
    switch (status) {
    case HTTP_STATUS_UNAUTHORIZED:
    case HTTP_STATUS_FORBIDDEN:
        return about(ErrorKind::AuthenticationNeeded, subject);
    case HTTP_STATUS_UPGRADE_REQUIRED:
        return {ErrorKind::Other, hostText("EncryptionNeeded").arg(subject.service)};
    default:
        return refused(subject, hostText("HttpStatus")
                                    .arg(QString::number(static_cast<int>(status)),
                                         QString::fromUtf8(httpStatus(status))));
    }
}

Error fromIpp(ipp_status_t status, const QString& message, const RequestSubject& subject) {
    switch (status) {
    case IPP_STATUS_ERROR_FORBIDDEN:
    case IPP_STATUS_ERROR_NOT_AUTHENTICATED:
    case IPP_STATUS_ERROR_NOT_AUTHORIZED:
    case IPP_STATUS_ERROR_CUPS_AUTHENTICATION_CANCELED:
        return about(ErrorKind::AuthenticationNeeded, subject);
    case IPP_STATUS_ERROR_NOT_FOUND:
        return about(subject.job != 0 ? ErrorKind::NoSuchJob : ErrorKind::NoSuchQueue, subject);
    case IPP_STATUS_ERROR_NOT_ACCEPTING_JOBS:
        return about(ErrorKind::Rejecting, subject);
    case IPP_STATUS_ERROR_DOCUMENT_FORMAT_NOT_SUPPORTED:
        return about(ErrorKind::FormatNotSupported, subject);
    default:
        break;
    }
    const QString name = QString::fromUtf8(ippErrorString(status));
    QString words = message.trimmed();
    while (words.endsWith(u'.'))
        words.chop(1);
    return refused(subject, words.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(words, name));
}

Error brokenOff(const Deadline& deadline, const RequestSubject& subject) {
    if (deadline.isCancelled())
        return cancelled();
    return about(deadline.isOver() ? ErrorKind::SilentServer : ErrorKind::ServerGone, subject);
}

} // namespace labelcut::printerrors
