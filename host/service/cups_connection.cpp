// Print service: what a host asks a print service.
#include "host/service/cups_connection.h"

#include <QIODevice>
#include <QSet>
#include <QUrl>

#include <cups/cups.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr int kPageOfQueues = 100;
/// Bytes of an IPP name or text value that every service takes.
constexpr qsizetype kMaxNameBytes = 255;

constexpr std::array kQueueAttributes = {
    "device-uri",
    "printer-info",
    "printer-is-accepting-jobs",
    "printer-is-shared",
    "printer-location",
    "printer-make-and-model",
    "printer-name",
    "printer-state",
    "printer-state-message",
    "printer-state-reasons",
    "printer-type",
    "printer-uri-supported",
};

/// At most kMaxNameBytes of UTF-8, cut between characters.
QByteArray shortened(const QString& text) {
    QByteArray bytes = text.toUtf8();
    if (bytes.size() <= kMaxNameBytes)
        return bytes;
    qsizetype end = kMaxNameBytes;
    while (end > 0 && (static_cast<unsigned char>(bytes.at(end)) & 0xC0) == 0x80)
        --end;
    bytes.truncate(end);
    return bytes;
}

/// A queue name as a part of a path. Names with these characters cannot exist.
std::optional<QByteArray> pathOf(const QString& name) {
    const auto isForbidden = [](QChar c) {
        return c < u' ' || c == QChar(0x7F) || QStringView(u"/\\?'\"#").contains(c);
    };
    if (name.isEmpty() || std::any_of(name.begin(), name.end(), isForbidden))
        return std::nullopt;
    return "/printers/" + name.toUtf8();
}

IppMessage newRequest(ipp_op_t operation, const QByteArray& uriName, const QByteArray& uri,
                      const QString& user) {
    IppMessage request(ippNewRequest(operation));
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, uriName.constData(), nullptr,
                 uri.constData());
    const QByteArray name = user.isEmpty() ? QByteArray(cupsUser()) : shortened(user);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr,
                 name.constData());
    return request;
}

/// Services look at the path only, and the name by which one is reached may not be its own.
IppMessage newQueueRequest(ipp_op_t operation, const QByteArray& path, const QString& user = {}) {
    return newRequest(operation, "printer-uri", "ipp://localhost" + path.toPercentEncoding("/"),
                      user);
}

IppMessage newJobRequest(ipp_op_t operation, int job, const QString& user = {}) {
    return newRequest(operation, "job-uri", "ipp://localhost/jobs/" + QByteArray::number(job),
                      user);
}

void addDocumentFormat(const IppMessage& request, const QString& type) {
    if (!type.isEmpty())
        ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_MIMETYPE, "document-format", nullptr,
                     shortened(type).constData());
}

void addJobAttributes(const IppMessage& message, const JobRequest& job) {
    ipp_t* request = message.get();
    const QString title = job.title.isEmpty() ? hostText("Untitled") : job.title;
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "job-name", nullptr,
                 shortened(title).constData());
    if (job.copies > 1)
        ippAddInteger(request, IPP_TAG_JOB, IPP_TAG_INTEGER, "copies", job.copies);
    if (job.isLaidOut)
        ippAddString(request, IPP_TAG_JOB, IPP_TAG_KEYWORD, "print-scaling", nullptr, "none");
    if (job.isHeld)
        ippAddString(request, IPP_TAG_JOB, IPP_TAG_KEYWORD, "job-hold-until", nullptr,
                     "indefinite");
    // As names, since choices such as "DC24" or "Custom.50x500" are no IPP keywords.
    for (const auto& [keyword, choice] : job.options)
        ippAddString(request, IPP_TAG_JOB, IPP_TAG_NAME, keyword.toUtf8().constData(), nullptr,
                     shortened(choice).constData());
}

QString text(ipp_attribute_t* attribute) {
    return QString::fromUtf8(ippGetString(attribute, 0, nullptr));
}

QStringList texts(ipp_attribute_t* attribute) {
    QStringList all;
    for (int i = 0; i < ippGetCount(attribute); ++i)
        all.append(QString::fromUtf8(ippGetString(attribute, i, nullptr)));
    return all;
}

QStringList reasons(ipp_attribute_t* attribute) {
    QStringList all = texts(attribute);
    all.removeAll(QStringLiteral("none"));
    return all;
}

/// Any value as text; a service may tell more than fits any fixed buffer.
QString anyText(ipp_attribute_t* attribute) {
    QByteArray bytes(static_cast<qsizetype>(ippAttributeString(attribute, nullptr, 0)) + 1, '\0');
    ippAttributeString(attribute, bytes.data(), static_cast<std::size_t>(bytes.size()));
    return QString::fromUtf8(bytes.constData());
}

PMPrinterState printerState(int number) {
    switch (number) {
    case IPP_PSTATE_PROCESSING:
        return PMPrinterState::Processing;
    case IPP_PSTATE_STOPPED:
        return PMPrinterState::Stopped;
    default:
        return PMPrinterState::Idle;
    }
}

JobState jobState(int number) {
    const bool isKnown = number >= IPP_JSTATE_PENDING && number <= IPP_JSTATE_COMPLETED;
    return isKnown ? static_cast<JobState>(number) : JobState::Pending;
}

void readType(Queue& queue, int type) {
    const auto has = [bits = static_cast<unsigned>(type)](unsigned bit) {
        return (bits & bit) != 0;
    };
    queue.isDefault = has(CUPS_PRINTER_DEFAULT);
    queue.isRemote = has(CUPS_PRINTER_REMOTE);
    queue.isClass = has(CUPS_PRINTER_CLASS);
}

void readQueue(Queue& queue, ipp_attribute_t* attribute) {
    const QByteArray name = ippGetName(attribute);
    if (name == "device-uri")
        queue.deviceUri = text(attribute);
    else if (name == "printer-info")
        queue.info = text(attribute);
    else if (name == "printer-is-accepting-jobs")
        queue.isAccepting = ippGetBoolean(attribute, 0) != 0;
    else if (name == "printer-is-shared")
        queue.isShared = ippGetBoolean(attribute, 0) != 0;
    else if (name == "printer-location")
        queue.location = text(attribute);
    else if (name == "printer-make-and-model")
        queue.makeAndModel = text(attribute);
    else if (name == "printer-name")
        queue.name = text(attribute);
    else if (name == "printer-state")
        queue.state = printerState(ippGetInteger(attribute, 0));
    else if (name == "printer-state-message")
        queue.stateMessage = text(attribute);
    else if (name == "printer-state-reasons")
        queue.stateReasons = reasons(attribute);
    else if (name == "printer-type")
        readType(queue, ippGetInteger(attribute, 0));
    else if (name == "printer-uri-supported")
        queue.uri = text(attribute);
}

/// The queues of an answer: one group of printer attributes each.
std::vector<Queue> readQueues(const IppMessage& answer) {
    std::vector<Queue> queues;
    bool inGroup = false;
    for (ipp_attribute_t* attribute = ippFirstAttribute(answer.get()); attribute;
         attribute = ippNextAttribute(answer.get())) {
        const bool belongs =
            ippGetGroupTag(attribute) == IPP_TAG_PRINTER && ippGetName(attribute) != nullptr;
        if (belongs && !inGroup)
            queues.emplace_back();
        if (belongs)
            readQueue(queues.back(), attribute);
        inGroup = belongs;
    }
    std::erase_if(queues, [](const Queue& queue) { return queue.name.isEmpty(); });
    return queues;
}

void readJob(JobStatus& job, ipp_attribute_t* attribute) {
    const QByteArray name = ippGetName(attribute);
    if (name == "job-id")
        job.id = ippGetInteger(attribute, 0);
    else if (name == "job-state")
        job.state = jobState(ippGetInteger(attribute, 0));
    else if (name == "job-state-reasons")
        job.stateReasons = reasons(attribute);
    else if (name == "job-name")
        job.title = text(attribute);
    else if (name == "job-originating-user-name")
        job.user = text(attribute);
    else if (name == "job-printer-state-message")
        job.message = text(attribute);
    else if (name == "time-at-processing")
        job.mayHaveBegun = ippGetValueTag(attribute) != IPP_TAG_NOVALUE;
    else if (name == "job-media-sheets-completed" || name == "job-impressions-completed")
        job.sidesDone = std::max(job.sidesDone, ippGetInteger(attribute, 0));
}

RequestSubject aboutQueue(const QString& name) {
    RequestSubject subject;
    subject.queue = name;
    return subject;
}

RequestSubject aboutJob(int job) {
    RequestSubject subject;
    subject.job = job;
    return subject;
}

RequestSubject aboutJobRequest(const JobRequest& request) {
    RequestSubject subject = aboutQueue(request.queue);
    subject.documentType = request.documentFormat;
    return subject;
}

/// Whether the service may have made the job whose number has not come.
bool mayHaveMadeAJob(const Error& error) {
    return error.kind == ErrorKind::SilentServer || error.kind == ErrorKind::ServerGone ||
           error.kind == ErrorKind::NotAPrintService;
}

Error noQueue(const ServiceAddress& address, const QString& name) {
    RequestSubject subject = aboutQueue(name);
    subject.service = address.text();
    return printerrors::about(ErrorKind::NoSuchQueue, subject);
}

/// The service may answer everything else: what did not arrive is named.
Error ppdNotFetched(const Error& error, const QString& queue) {
    if (error.kind != ErrorKind::SilentServer && error.kind != ErrorKind::ServerGone)
        return error;
    return {error.kind, hostText("PpdNotSent").arg(queue, error.sentence)};
}

Result<Done> done(const Result<IppMessage>& answer) {
    return answer ? Result<Done>(Done()) : answer.error();
}

} // namespace

CupsConnection::CupsConnection(ServiceAddress address)
    : mAddress(std::move(address)) {}

QString CupsConnection::userName() {
    return QString::fromUtf8(cupsUser());
}

Result<Done> CupsConnection::reach(const CallLimits& limits) const {
    return ippReach(mAddress, Deadline(limits));
}

Result<std::vector<Queue>>
CupsConnection::listQueues(const CallLimits& limits,
                           const std::function<void(const std::vector<Queue>&)>& found) const {
    const Deadline deadline(limits);
    std::vector<Queue> all;
    QSet<QString> seen;
    bool hasMore = true;
    while (hasMore && all.size() < kMaxQueues) {
        const IppMessage request = newQueueRequest(IPP_OP_CUPS_GET_PRINTERS, "/");
        ippAddInteger(request.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "limit", kPageOfQueues);
        if (!all.empty()) // the page begins with the queue of this name, known already
            ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "first-printer-name",
                         nullptr, all.back().name.toUtf8().constData());
        ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                      static_cast<int>(kQueueAttributes.size()), nullptr, kQueueAttributes.data());
        const auto answer = ippExchange(mAddress, deadline, request, "/", nullptr, {});
        // Some services say "not found" when they have no queue at all.
        if (!answer && answer.error().kind == ErrorKind::NoSuchQueue)
            return all;
        if (!answer)
            return answer.error();
        std::vector<Queue> page = readQueues(*answer);
        hasMore = page.size() >= std::size_t(kPageOfQueues);
        std::erase_if(page, [&](const Queue& queue) { return seen.contains(queue.name); });
        for (const Queue& queue : page)
            seen.insert(queue.name);
        hasMore = hasMore && !page.empty();
        if (found && hasMore)
            found(page);
        std::ranges::move(page, std::back_inserter(all));
    }
    return all;
}

Result<std::optional<QString>> CupsConnection::defaultQueue(const CallLimits& limits) const {
    const IppMessage request = newQueueRequest(IPP_OP_CUPS_GET_DEFAULT, "/");
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr,
                 "printer-name");
    const auto answer = ippExchange(mAddress, Deadline(limits), request, "/", nullptr, {});
    // Services say "not found" when they have no default.
    if (!answer && answer.error().kind == ErrorKind::NoSuchQueue)
        return std::optional<QString>();
    if (!answer)
        return answer.error();
    const std::vector<Queue> queues = readQueues(*answer);
    return queues.empty() ? std::optional<QString>() : std::optional(queues.front().name);
}

Result<QueueDetails> CupsConnection::queueAttributes(const QString& name,
                                                     const CallLimits& limits) const {
    const auto path = pathOf(name);
    if (!path)
        return noQueue(mAddress, name);
    const Deadline deadline(limits);
    const IppMessage request = newQueueRequest(IPP_OP_GET_PRINTER_ATTRIBUTES, *path);
    const auto answer = ippExchange(mAddress, deadline, request, "/", nullptr, aboutQueue(name));
    if (!answer)
        return answer.error();

    QueueDetails details;
    for (ipp_attribute_t* attribute = ippFirstAttribute(answer->get()); attribute;
         attribute = ippNextAttribute(answer->get())) {
        if (ippGetGroupTag(attribute) != IPP_TAG_PRINTER || !ippGetName(attribute))
            continue;
        readQueue(details.queue, attribute);
        if (std::strcmp(ippGetName(attribute), "document-format-supported") == 0)
            details.documentFormats = texts(attribute);
        details.attributes.insert(QString::fromUtf8(ippGetName(attribute)), anyText(attribute));
    }
    return details;
}

Result<QByteArray> CupsConnection::fetchPpd(const QString& name, const CallLimits& limits) const {
    const auto path = pathOf(name);
    if (!path)
        return noQueue(mAddress, name);
    const Deadline deadline(limits);
    const auto fetched = httpFetch(mAddress, deadline, *path + ".ppd", aboutQueue(name));
    if (!fetched)
        return ppdNotFetched(fetched.error(), name);
    if (*fetched)
        return **fetched;
    // The answer is the same for a queue without PPD and for none: ask which it is.
    CallLimits rest = limits;
    rest.timeout = deadline.remaining();
    const auto queue = queueAttributes(name, rest);
    return queue ? printerrors::about(ErrorKind::QueueWithoutPpd, aboutQueue(name)) : queue.error();
}

Result<Done> CupsConnection::validateJob(const JobRequest& request,
                                         const CallLimits& limits) const {
    const auto path = pathOf(request.queue);
    if (!path)
        return noQueue(mAddress, request.queue);
    const IppMessage message = newQueueRequest(IPP_OP_VALIDATE_JOB, *path, request.user);
    addDocumentFormat(message, request.documentFormat);
    addJobAttributes(message, request);
    const Deadline deadline(limits);
    const auto answer = ippExchange(mAddress, deadline, message, path->constData(), nullptr,
                                    aboutJobRequest(request));
    if (!answer)
        return answer.error();
    // The answer is the same for a queue that takes no jobs: look at the queue as well.
    CallLimits rest = limits;
    rest.timeout = deadline.remaining();
    const auto details = queueAttributes(request.queue, rest);
    if (!details)
        return details.error();
    if (!details->queue.isAccepting)
        return printerrors::about(ErrorKind::Rejecting, aboutQueue(request.queue));
    return Done();
}

Result<int> CupsConnection::createJob(const JobRequest& request, const CallLimits& limits) const {
    const auto path = pathOf(request.queue);
    if (!path)
        return noQueue(mAddress, request.queue);
    const IppMessage message = newQueueRequest(IPP_OP_CREATE_JOB, *path, request.user);
    addJobAttributes(message, request);
    const auto answer = ippExchange(mAddress, Deadline(limits), message, path->constData(), nullptr,
                                    aboutJobRequest(request));
    const RequestSubject subject = subjectOf(request, 0, limits);
    if (!answer)
        return mayHaveMadeAJob(answer.error())
                   ? printerrors::withFate(answer.error(), JobFate::Empty, subject)
                   : answer.error();
    ipp_attribute_t* id = ippFindAttribute(answer->get(), "job-id", IPP_TAG_INTEGER);
    if (!id || ippGetInteger(id, 0) < 1)
        return printerrors::withFate(printerrors::about(ErrorKind::NotAPrintService, subject),
                                     JobFate::Empty, subject);
    return ippGetInteger(id, 0);
}

Result<Done> CupsConnection::sendDocument(int job, const JobRequest& request, QIODevice& document,
                                          const SendProgress& progress,
                                          const CallLimits& limits) const {
    DocumentBody body{document, progress};
    const Result<Done> sent = upload(job, request, body, Deadline(limits));
    if (sent || sent.error().kind == ErrorKind::NoSuchJob)
        return sent;
    const std::optional<JobFate> fate = sent.error().kind == ErrorKind::NoService
                                            ? JobFate::Unfinished
                                            : takeBack(job, request.user, body.mayBeComplete);
    if (!fate)
        return Done();
    return printerrors::withFate(sent.error(), *fate, subjectOf(request, job, limits));
}

/// Cancels a job that may be in the queue. @param mayBeComplete  whether the service may have all
/// of its document. @return what has become of it; nothing when it is printed.
std::optional<JobFate> CupsConnection::takeBack(int job, const QString& user,
                                                bool mayBeComplete) const {
    const Deadline cleanUp({kCleanUpTime, nullptr});
    const Result<Done> removed = cancelJob(job, user, cleanUp.limits());
    if (!mayBeComplete) {
        const bool isGone = removed || removed.error().kind == ErrorKind::NoSuchJob;
        return isGone ? JobFate::Gone : JobFate::Unfinished;
    }
    const Result<JobStatus> status = jobAttributes(job, {cleanUp.remaining(), nullptr});
    if (status && status->state == JobState::Completed)
        return std::nullopt;
    const bool hasEnded =
        removed ||
        (status && (status->state == JobState::Canceled || status->state == JobState::Aborted));
    if (!hasEnded)
        return JobFate::Unknown;
    return status && !status->mayHaveBegun ? JobFate::Gone : JobFate::Begun;
}

RequestSubject CupsConnection::subjectOf(const JobRequest& request, int job,
                                         const CallLimits& limits) const {
    RequestSubject subject = aboutJobRequest(request);
    subject.service = mAddress.text();
    subject.timeout = limits.timeout;
    subject.job = job;
    return subject;
}

Result<Done> CupsConnection::upload(int job, const JobRequest& request, DocumentBody& body,
                                    const Deadline& deadline) const {
    const IppMessage message = newJobRequest(IPP_OP_SEND_DOCUMENT, job, request.user);
    addDocumentFormat(message, request.documentFormat);
    ippAddBoolean(message.get(), IPP_TAG_OPERATION, "last-document", 1);
    RequestSubject subject = aboutJobRequest(request);
    subject.job = job;
    const QByteArray path = pathOf(request.queue).value_or("/jobs/");
    return done(ippExchange(mAddress, deadline, message, path.constData(), &body, subject));
}

Result<JobStatus> CupsConnection::jobAttributes(int job, const CallLimits& limits) const {
    const IppMessage request = newJobRequest(IPP_OP_GET_JOB_ATTRIBUTES, job);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr,
                 "all");
    const auto answer =
        ippExchange(mAddress, Deadline(limits), request, "/jobs/", nullptr, aboutJob(job));
    if (!answer)
        return answer.error();
    JobStatus status;
    for (ipp_attribute_t* attribute = ippFirstAttribute(answer->get()); attribute;
         attribute = ippNextAttribute(answer->get())) {
        if (ippGetGroupTag(attribute) != IPP_TAG_JOB || !ippGetName(attribute))
            continue;
        readJob(status, attribute);
        status.attributes.insert(QString::fromUtf8(ippGetName(attribute)), anyText(attribute));
    }
    return status;
}

Result<Done> CupsConnection::cancelJob(int job, const QString& user,
                                       const CallLimits& limits) const {
    return change(IPP_OP_CANCEL_JOB, job, user, limits);
}

Result<Done> CupsConnection::holdJob(int job, const QString& user, const CallLimits& limits) const {
    return change(IPP_OP_HOLD_JOB, job, user, limits);
}

Result<Done> CupsConnection::releaseJob(int job, const QString& user,
                                        const CallLimits& limits) const {
    return change(IPP_OP_RELEASE_JOB, job, user, limits);
}

/// An operation that takes nothing but the job.
Result<Done> CupsConnection::change(ipp_op_t operation, int job, const QString& user,
                                    const CallLimits& limits) const {
    const IppMessage request = newJobRequest(operation, job, user);
    return done(ippExchange(mAddress, Deadline(limits), request, "/jobs/", nullptr, aboutJob(job)));
}

} // namespace labelcut
