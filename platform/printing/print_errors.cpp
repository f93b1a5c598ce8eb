// Our printing framework: the sentences for what can go wrong with a print service.
#include "platform/printing/print_errors.h"

namespace labelcut::printerrors {

namespace {

/// "1 second", "2.5 seconds".
QString seconds(int milliseconds) {
    const QString number = QString::number(milliseconds / 1000.0, 'g', 4);
    return number == QStringLiteral("1") ? QStringLiteral("1 second")
                                         : QStringLiteral("%1 seconds").arg(number);
}

Error authenticationNeeded(const RequestSubject& subject) {
    return {ErrorKind::AuthenticationNeeded,
            QStringLiteral("The print service at %1 does not let you do this without signing in, "
                           "which is not possible from here. Ask whoever looks after it for "
                           "permission, or choose another printer.")
                .arg(subject.service)};
}

Error noSuchJob(const RequestSubject& subject) {
    return {ErrorKind::NoSuchJob,
            QStringLiteral("The print service at %1 has no job %2 (any more). It may have been "
                           "printed or removed: \"lpstat -W all\" lists the jobs.")
                .arg(subject.service)
                .arg(subject.job)};
}

Error formatNotSupported(const RequestSubject& subject) {
    const QString type =
        subject.documentType.isEmpty() ? QStringLiteral("this type") : subject.documentType;
    return {ErrorKind::FormatNotSupported,
            QStringLiteral("The print service at %1 cannot print documents of type %2. Save the "
                           "document as PDF, or install the filter that is missing.")
                .arg(subject.service, type)};
}

Error other(const RequestSubject& subject, const QString& words) {
    return {ErrorKind::Other,
            QStringLiteral("The print service at %1 refused the request: %2. Its error log says "
                           "more.")
                .arg(subject.service, words)};
}

} // namespace

Error noService(const RequestSubject& subject, const QString& reason) {
    const QString why = reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason);
    return {ErrorKind::NoService,
            QStringLiteral("There is no print service at %1%2. Start CUPS there (\"systemctl start "
                           "cups\"), or name another one in CUPS_SERVER.")
                .arg(subject.service, why)};
}

Error unreachable(const RequestSubject& subject) {
    return {ErrorKind::Unreachable,
            QStringLiteral("The print service at %1 could not be reached within %2. Check the "
                           "network and the service's name, or allow more time.")
                .arg(subject.service, seconds(subject.timeout))};
}

Error silent(const RequestSubject& subject) {
    return {ErrorKind::SilentServer,
            QStringLiteral("The print service at %1 did not answer within %2. It may be overloaded "
                           "or stuck: try again later, restart it, or allow more time.")
                .arg(subject.service, seconds(subject.timeout))};
}

Error gone(const RequestSubject& subject) {
    return {ErrorKind::ServerGone,
            QStringLiteral("The print service at %1 ended the connection before it had answered. "
                           "Check that it is running, then try again.")
                .arg(subject.service)};
}

Error notAPrintService(const RequestSubject& subject) {
    return {ErrorKind::NotAPrintService,
            QStringLiteral("What answers at %1 is not a print service. Check the address in "
                           "CUPS_SERVER.")
                .arg(subject.service)};
}

Error cancelled() {
    return {ErrorKind::Cancelled, QStringLiteral("Cancelled.")};
}

Error queueWithoutPpd(const RequestSubject& subject) {
    return {ErrorKind::QueueWithoutPpd,
            QStringLiteral("The print queue \"%1\" has no printer description (PPD), so that its "
                           "options are not known. Give it one (\"lpadmin -p %1 -P FILE\"), or "
                           "open a PPD file instead of the queue.")
                .arg(subject.queue)};
}

Error noSuchQueue(const RequestSubject& subject) {
    return {ErrorKind::NoSuchQueue,
            QStringLiteral("The print service at %1 has no queue \"%2\". \"lpstat -e\" lists the "
                           "queues there are.")
                .arg(subject.service, subject.queue)};
}

Error rejecting(const RequestSubject& subject) {
    return {ErrorKind::Rejecting,
            QStringLiteral("The print queue \"%1\" takes no new jobs at the moment. Let it take "
                           "jobs again (\"cupsaccept %1\"), or choose another one.")
                .arg(subject.queue)};
}

Error documentUnreadable(const QString& reason) {
    return {ErrorKind::DocumentUnreadable,
            QStringLiteral("The document could not be read while it was sent (%1), and nothing was "
                           "printed. Check the file and print again.")
                .arg(reason)};
}

Error fromHttp(http_status_t status, const RequestSubject& subject) {
    switch (status) {
    case HTTP_STATUS_UNAUTHORIZED:
    case HTTP_STATUS_FORBIDDEN:
        return authenticationNeeded(subject);
    case HTTP_STATUS_UPGRADE_REQUIRED:
        return {ErrorKind::Other,
                QStringLiteral("The print service at %1 insists on an encrypted connection. Ask "
                               "for one by setting CUPS_ENCRYPTION to \"Required\".")
                    .arg(subject.service)};
    default:
        return other(subject, QStringLiteral("HTTP status %1, %2")
                                  .arg(static_cast<int>(status))
                                  .arg(QString::fromUtf8(httpStatus(status))));
    }
}

Error fromIpp(ipp_status_t status, const QString& message, const RequestSubject& subject) {
    switch (status) {
    case IPP_STATUS_ERROR_FORBIDDEN:
    case IPP_STATUS_ERROR_NOT_AUTHENTICATED:
    case IPP_STATUS_ERROR_NOT_AUTHORIZED:
    case IPP_STATUS_ERROR_CUPS_AUTHENTICATION_CANCELED:
        return authenticationNeeded(subject);
    case IPP_STATUS_ERROR_NOT_FOUND:
        return subject.job != 0 ? noSuchJob(subject) : noSuchQueue(subject);
    case IPP_STATUS_ERROR_NOT_ACCEPTING_JOBS:
        return rejecting(subject);
    case IPP_STATUS_ERROR_DOCUMENT_FORMAT_NOT_SUPPORTED:
        return formatNotSupported(subject);
    default:
        break;
    }
    const QString name = QString::fromUtf8(ippErrorString(status));
    QString words = message.trimmed();
    while (words.endsWith(u'.'))
        words.chop(1);
    return other(subject, words.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(words, name));
}

Error brokenOff(const Deadline& deadline, const RequestSubject& subject) {
    if (deadline.isCancelled())
        return cancelled();
    return deadline.isOver() ? silent(subject) : gone(subject);
}

} // namespace labelcut::printerrors
