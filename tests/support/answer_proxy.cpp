// Test support: a way to a print service on which answers are changed or lost.
#include "tests/support/answer_proxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace labelcut::test {

namespace {

const QByteArray kHeadEnd = "\r\n\r\n";

/// Whether all of a message is there.
bool isWhole(const QByteArray& message) {
    const qsizetype end = message.indexOf(kHeadEnd);
    if (end < 0)
        return false;
    const QByteArray head = message.first(end).toLower();
    const QByteArray body = message.sliced(end + kHeadEnd.size());
    if (head.contains("\r\ntransfer-encoding: chunked"))
        return body == "0\r\n\r\n" || body.endsWith("\r\n0\r\n\r\n");
    const qsizetype length = head.indexOf("\r\ncontent-length: ");
    return length < 0 ||
           body.size() >= head.sliced(length + 18).split('\r').constFirst().toLongLong();
}

/// The beginning of a request's IPP message; empty when there is none.
QByteArray ippOf(const QByteArray& request) {
    if (!request.startsWith("POST "))
        return {};
    const QByteArray body = request.sliced(request.indexOf(kHeadEnd) + kHeadEnd.size());
    const bool isChunked =
        request.first(request.indexOf(kHeadEnd)).toLower().contains("encoding: chunked");
    return isChunked ? body.sliced(body.indexOf("\r\n") + 2) : body;
}

} // namespace

AnswerProxy::AnswerProxy(QString socket, Change change)
    : mSocket(std::move(socket))
    , mChange(std::move(change))
    , mServer([this](int client) { serve(client); }) {}

void AnswerProxy::serve(int client) const {
    const QByteArray request = readMessage(client);
    if (mCut || !isWhole(request))
        return;
    Exchange exchange;
    const QByteArray ipp = ippOf(request);
    if (ipp.size() >= 8) {
        exchange.operation =
            static_cast<unsigned char>(ipp.at(2)) << 8 | static_cast<unsigned char>(ipp.at(3));
        exchange.id = ipp.sliced(4, 4);
    }
    exchange.answer = answerOf(request);
    const Reply reply = mChange(exchange);
    sendAll(client, reply.bytes.constData(), static_cast<std::size_t>(reply.bytes.size()));
    if (reply.staysOpen)
        waitForEnd(client);
}

QByteArray AnswerProxy::readMessage(int from) const {
    QByteArray message;
    std::array<char, 64 * 1024> bytes;
    while (!mServer.isStopping() && !isWhole(message)) {
        pollfd waiting{from, POLLIN, 0};
        if (poll(&waiting, 1, LoopbackServer::kPoll) <= 0)
            continue;
        const ssize_t got = recv(from, bytes.data(), bytes.size(), 0);
        if (got <= 0)
            break;
        message.append(bytes.data(), got);
    }
    return message;
}

QByteArray AnswerProxy::answerOf(const QByteArray& request) const {
    const int server = mSocket.isEmpty() ? -1 : connectedTo(mSocket);
    if (server < 0)
        return {};
    sendAll(server, request.constData(), static_cast<std::size_t>(request.size()));
    QByteArray answer = readMessage(server);
    close(server);
    return answer;
}

void AnswerProxy::waitForEnd(int client) const {
    while (!mServer.isStopping()) {
        pollfd waiting{client, POLLIN, 0};
        if (poll(&waiting, 1, LoopbackServer::kPoll) > 0)
            return;
    }
}

QByteArray httpWithIpp(const QByteArray& ipp) {
    return "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: " +
           QByteArray::number(ipp.size()) + kHeadEnd + ipp;
}

QByteArray ippAnswer(int status, const QByteArray& id, const QByteArray& groups) {
    const std::array<char, 4> head = {2, 0, static_cast<char>(status >> 8),
                                      static_cast<char>(status & 0xff)};
    return QByteArray(head.data(), head.size()) + id + groups + '\x03';
}

QByteArray nestedCollections(int depth) {
    const QByteArray begin("\x34\x00\x00\x00\x00", 5);
    const QByteArray member("\x4a\x00\x00\x00\x01n", 6);
    const QByteArray end("\x37\x00\x00\x00\x00", 5);
    return QByteArray("\x04\x34\x00\x01n\x00\x00", 7) + (member + begin).repeated(depth - 1) +
           end.repeated(depth);
}

} // namespace labelcut::test
