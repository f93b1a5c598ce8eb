// Print service: one request to a print service and its answer.
#include "host/service/ipp_exchange.h"

#include <QIODevice>

#include <cups/cups.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <semaphore>
#include <thread>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr int kDefaultPort = 631;
/// Seconds after which libcups asks whether to go on waiting.
constexpr double kPollSeconds = 0.25;
/// How often the watch and the wait for a name look at the deadline.
constexpr std::chrono::milliseconds kWatchInterval{20};
constexpr std::size_t kChunkBytes = 64 * 1024;

struct HttpCloser {
    void operator()(http_t* http) const noexcept { httpClose(http); }
};
using Http = std::unique_ptr<http_t, HttpCloser>;

struct AddressListDeleter {
    void operator()(http_addrlist_t* list) const noexcept { httpAddrFreeList(list); }
};
using AddressList = std::unique_ptr<http_addrlist_t, AddressListDeleter>;

/// libcups asks this whenever nothing moved for kPollSeconds: 1 to go on, 0 to give up.
int mayGoOn(http_t*, void* deadline) {
    return static_cast<const Deadline*>(deadline)->isOver() ? 0 : 1;
}

/// Cuts a connection when its deadline is over. libcups alone asks only while nothing moves, so
/// that a service which sends a byte now and then would hold it for ever.
class Watch {
public:
    Watch(http_t* http, const Deadline& deadline)
        : mSocket(dup(httpGetFd(http)))
        , mThread([this, &deadline] { run(deadline); }) {}
    ~Watch() {
        mDone.release();
        mThread.join();
        if (mSocket >= 0)
            close(mSocket);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    void run(const Deadline& deadline) {
        while (!deadline.isOver()) {
            if (mDone.try_acquire_for(kWatchInterval))
                return;
        }
        if (mSocket >= 0)
            shutdown(mSocket, SHUT_RDWR);
    }

    int mSocket;
    std::binary_semaphore mDone{0};
    std::thread mThread;
};

/// The host's addresses; null when there are none or the deadline is over. The system's resolver
/// cannot be interrupted, so that a late one is left to end by itself.
AddressList resolve(const ServiceAddress& address, const Deadline& deadline) {
    struct Lookup {
        QByteArray host;
        QByteArray port;
        AddressList found;
        std::binary_semaphore done{0};

        void run() {
            found.reset(httpAddrGetList(host.constData(), AF_UNSPEC, port.constData()));
            done.release();
        }
    };
    const auto lookup = std::make_shared<Lookup>();
    lookup->host = address.host.toUtf8();
    lookup->port = QByteArray::number(address.port);
    if (address.isSocket())
        lookup->run();
    else
        std::thread([lookup] { lookup->run(); }).detach();
    while (!lookup->done.try_acquire_for(kWatchInterval)) {
        if (deadline.isOver())
            return nullptr;
    }
    return std::move(lookup->found);
}

bool isIpV6(const QString& host) {
    in6_addr address;
    const QString bare = host.section(u'%', 0, 0); // without the zone
    return inet_pton(AF_INET6, bare.toLatin1().constData(), &address) == 1;
}

/// libcups takes any text for the name of a host, also what is left of half an address.
bool isHost(const QString& host) {
    const auto isForeign = [](QChar c) { return c.isSpace() || QStringView(u"[]/").contains(c); };
    return !host.isEmpty() && std::none_of(host.begin(), host.end(), isForeign) &&
           (!host.contains(u':') || isIpV6(host));
}

bool isTooLongForSocket(const ServiceAddress& address) {
    return address.isSocket() &&
           static_cast<std::size_t>(address.host.toUtf8().size()) >= sizeof(sockaddr_un::sun_path);
}

/// Empty for 0, and for "Host is down", libcups' words for every address that refuses.
QString systemWords(int error) {
    return error == 0 || error == EHOSTDOWN ? QString()
                                            : QString::fromLocal8Bit(std::strerror(error));
}

/// libcups has the same words, "Host is down", for each socket that it could not connect to.
Error socketNotConnected(const RequestSubject& subject) {
    const bool mayConnect = access(subject.service.toUtf8().constData(), R_OK | W_OK) == 0;
    const int error = mayConnect ? 0 : errno;
    if (mayConnect || error == ENOENT || error == ENOTDIR)
        return printerrors::nothingAtSocket(subject);
    return printerrors::noService(subject, systemWords(error));
}

Error notConnected(const Deadline& deadline, const RequestSubject& subject, int error) {
    if (deadline.isCancelled())
        return cancelled();
    if (deadline.isOver() || error == ETIMEDOUT)
        return printerrors::about(ErrorKind::Unreachable, subject);
    if (subject.service.startsWith(u'/'))
        return socketNotConnected(subject);
    return printerrors::noService(subject, systemWords(error));
}

Result<Http> connected(const ServiceAddress& address, const Deadline& deadline,
                       const RequestSubject& subject) {
    if (deadline.isOver())
        return notConnected(deadline, subject, 0);
    if (isTooLongForSocket(address))
        return printerrors::noService(subject, hostText("SocketPathTooLong"));
    if (!address.isSocket() && !isHost(address.host))
        return printerrors::noServerNamed(subject);
    const AddressList addresses = resolve(address, deadline);
    if (!addresses)
        return notConnected(deadline, subject, deadline.isOver() ? 0 : EADDRNOTAVAIL);

    // Without milliseconds nothing is connected yet, and the encryption's handshake, which is part
    // of connecting, already runs under the time limit.
    Http http(httpConnect2(address.host.toUtf8().constData(), address.port, addresses.get(),
                           AF_UNSPEC, cupsEncryption(), 1, 0, nullptr));
    if (!http)
        return notConnected(deadline, subject, errno);
    httpSetTimeout(http.get(), kPollSeconds, mayGoOn, const_cast<Deadline*>(&deadline));
    const CancelFlag* cancel = deadline.limits().cancel;
    if (httpReconnect2(http.get(), std::max(deadline.remaining(), 1),
                       cancel ? cancel->raw() : nullptr) != 0)
        return notConnected(deadline, subject, httpError(http.get()));
    return http;
}

/// The HTTP status once it is final; HTTP_STATUS_ERROR when the connection failed first.
http_status_t finalStatus(http_t* http, const Deadline& deadline) {
    http_status_t status = HTTP_STATUS_CONTINUE;
    while (status == HTTP_STATUS_CONTINUE && !deadline.isOver())
        status = httpUpdate(http);
    return status == HTTP_STATUS_CONTINUE ? HTTP_STATUS_ERROR : status;
}

/// The content of an answer, up to kMaxAnswerBytes.
class Content {
public:
    Content(http_t* http, const Deadline& deadline)
        : mHttp(http)
        , mDeadline(deadline)
        , mDeclared(httpGetLength2(http)) {}

    /// Waits for more and appends it. @return false at the end, however it came.
    bool more(QByteArray& all) {
        if (mRead > kMaxAnswerBytes || mDeadline.isOver())
            return false;
        const ssize_t got = httpRead2(mHttp, mChunk.data(), mChunk.size());
        mHasEnded = got <= 0;
        if (mHasEnded)
            return false;
        mRead += got;
        all.append(mChunk.data(), got);
        return true;
    }

    bool isTooLong() const { return mRead > kMaxAnswerBytes; }
    /// Whether it ended before its end, so that the connection is at fault and not the sender.
    bool isCutShort() const {
        const bool isLengthKnown = mDeclared < INT_MAX; // libcups' number for "until closed"
        const bool isShort = mRead == 0 || (isLengthKnown && mRead < mDeclared);
        return mDeadline.isOver() || httpError(mHttp) != 0 || (mHasEnded && isShort);
    }

private:
    http_t* mHttp;
    const Deadline& mDeadline;
    std::array<char, kChunkBytes> mChunk;
    qint64 mDeclared;
    qint64 mRead = 0;
    bool mHasEnded = false;
};

/// One request on its way over one connection.
class Exchange {
public:
    Exchange(Http http, const Deadline& deadline, const RequestSubject& subject)
        : mHttp(std::move(http))
        , mDeadline(deadline)
        , mSubject(subject)
        , mWatch(mHttp.get(), deadline) {}

    Result<IppMessage> post(ipp_t* request, const char* path, DocumentBody* body) {
        httpClearFields(mHttp.get());
        httpSetField(mHttp.get(), HTTP_FIELD_CONTENT_TYPE, "application/ipp");
        httpSetLength(mHttp.get(), body ? 0 : ippLength(request)); // 0: in chunks
        const bool sent = httpPost(mHttp.get(), path) == 0 && isRequestWritten(request);
        if (sent && body) {
            if (const std::optional<Error> failure = sendBody(*body))
                return *failure;
        }
        const http_status_t status = finalStatus(mHttp.get(), mDeadline);
        if (status == HTTP_STATUS_ERROR)
            return broken();
        if (status != HTTP_STATUS_OK)
            return printerrors::fromHttp(status, mSubject);
        return answer();
    }

    Result<std::optional<QByteArray>> get(const QByteArray& path) {
        using Fetched = std::optional<QByteArray>;
        httpClearFields(mHttp.get());
        if (httpGet(mHttp.get(), path.constData()) != 0)
            return broken();
        const http_status_t status = finalStatus(mHttp.get(), mDeadline);
        if (status == HTTP_STATUS_ERROR)
            return broken();
        if (status == HTTP_STATUS_NOT_FOUND)
            return Fetched();
        if (status != HTTP_STATUS_OK)
            return printerrors::fromHttp(status, mSubject);
        return everything();
    }

private:
    Error broken() const { return printerrors::brokenOff(mDeadline, mSubject); }

    bool isRequestWritten(ipp_t* request) {
        ippSetState(request, IPP_STATE_IDLE);
        ipp_state_t state = IPP_STATE_IDLE;
        while (state != IPP_STATE_DATA && state != IPP_STATE_ERROR)
            state = ippWrite(mHttp.get(), request);
        return state == IPP_STATE_DATA;
    }

    /// Sends the document; stops early, without failure, when the service has answered already.
    /// @return a failure that is not the connection's.
    std::optional<Error> sendBody(DocumentBody& body) {
        std::array<char, kChunkBytes> chunk;
        const qint64 total = body.data.isSequential() ? -1 : body.data.size() - body.data.pos();
        qint64 sent = 0;
        while (!httpCheck(mHttp.get())) {
            const qint64 got = body.data.read(chunk.data(), chunk.size());
            if (got < 0)
                return printerrors::documentUnreadable(body.data.errorString());
            if (mDeadline.isOver())
                return broken();
            // Without bytes this ends the chunks.
            body.mayBeComplete = got == 0;
            if (httpWrite2(mHttp.get(), chunk.data(), static_cast<std::size_t>(got)) < 0 ||
                got == 0)
                return std::nullopt;
            sent += got;
            if (body.progress)
                body.progress(sent, total);
        }
        return std::nullopt;
    }

    Result<IppMessage> answer() {
        Content content(mHttp.get(), mDeadline);
        IppScan scan;
        QByteArray bytes;
        IppShape shape = IppShape::Unfinished;
        while (shape == IppShape::Unfinished && content.more(bytes))
            shape = scan.look(bytes);
        if (shape == IppShape::TooMuch)
            return printerrors::tooMuch(mSubject);
        if (shape == IppShape::Unfinished)
            return unusable(content);
        IppMessage message = shape == IppShape::Whole
                                 ? readIpp(QByteArrayView(bytes).first(scan.length()), mDeadline)
                                 : nullptr;
        if (message)
            return message;
        return mDeadline.isOver() ? broken() : notAPrintService();
    }

    Result<std::optional<QByteArray>> everything() {
        Content content(mHttp.get(), mDeadline);
        QByteArray all;
        while (content.more(all)) {
        }
        if (content.isTooLong() || content.isCutShort())
            return unusable(content);
        return std::optional(all);
    }

    Error unusable(const Content& content) const {
        if (content.isTooLong())
            return printerrors::tooMuch(mSubject);
        return content.isCutShort() ? broken() : notAPrintService();
    }
    Error notAPrintService() const {
        return printerrors::about(ErrorKind::NotAPrintService, mSubject);
    }

    Http mHttp;
    const Deadline& mDeadline;
    const RequestSubject& mSubject;
    Watch mWatch;
};

QString statusMessage(ipp_t* answer) {
    ipp_attribute_t* message = ippFindAttribute(answer, "status-message", IPP_TAG_TEXT);
    return message ? QString::fromUtf8(ippGetString(message, 0, nullptr)) : QString();
}

void fill(RequestSubject& subject, const ServiceAddress& address, const Deadline& deadline) {
    subject.service = address.text();
    subject.timeout = deadline.limits().timeout;
}

} // namespace

ServiceAddress ServiceAddress::systemDefault() {
    return {QString::fromUtf8(cupsServer()), ippPort()};
}

std::optional<ServiceAddress> ServiceAddress::fromText(const QString& text) {
    ServiceAddress address{text, kDefaultPort};
    if (address.isSocket())
        return address;
    const bool bracketed = text.startsWith(u'[');
    const bool bareV6 = !bracketed && text.count(u':') > 1;
    const qsizetype hostEnd = bracketed ? text.indexOf(u']') : text.indexOf(u':');
    if (bracketed && hostEnd < 0)
        return std::nullopt;
    if (!bareV6 && hostEnd >= 0) {
        const qsizetype begin = bracketed ? 1 : 0;
        address.host = text.mid(begin, hostEnd - begin);
        const QString rest = text.mid(hostEnd + begin);
        bool isNumber = rest.isEmpty();
        if (rest.startsWith(u':'))
            address.port = rest.mid(1).toInt(&isNumber);
        if (!isNumber || address.port < 1 || address.port > 65535)
            return std::nullopt;
    }
    if (address.host.isEmpty())
        return std::nullopt;
    return address;
}

QString ServiceAddress::text() const {
    if (isSocket())
        return host;
    const QString shown = isIpV6(host) ? u'[' + host + u']' : host;
    const bool isPortShown = port != kDefaultPort || host.isEmpty();
    return isPortShown ? shown + u':' + QString::number(port) : shown;
}

Result<Done> ippReach(const ServiceAddress& address, const Deadline& deadline) {
    RequestSubject subject;
    fill(subject, address, deadline);
    const Result<Http> http = connected(address, deadline, subject);
    if (!http)
        return http.error();
    return Done();
}

Result<IppMessage> ippExchange(const ServiceAddress& address, const Deadline& deadline,
                               const IppMessage& request, const char* path, DocumentBody* body,
                               RequestSubject subject) {
    fill(subject, address, deadline);
    Result<Http> http = connected(address, deadline, subject);
    if (!http)
        return http.error();
    Exchange exchange(std::move(*http), deadline, subject);
    Result<IppMessage> answer = exchange.post(request.get(), path, body);
    if (!answer)
        return answer;
    if (ippGetRequestId(answer->get()) != ippGetRequestId(request.get()))
        return printerrors::notAsked(subject);
    const ipp_status_t status = ippGetStatusCode(answer->get());
    if (status >= IPP_STATUS_REDIRECTION_OTHER_SITE)
        return printerrors::fromIpp(status, statusMessage(answer->get()), subject);
    return answer;
}

Result<std::optional<QByteArray>> httpFetch(const ServiceAddress& address, const Deadline& deadline,
                                            const QByteArray& path, RequestSubject subject) {
    fill(subject, address, deadline);
    Result<Http> http = connected(address, deadline, subject);
    if (!http)
        return http.error();
    return Exchange(std::move(*http), deadline, subject).get(path);
}

} // namespace labelcut
