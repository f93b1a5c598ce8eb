// Test support: a way to a print service on which answers are changed or lost, while every request
// arrives. It can also stand alone, without a service behind it.
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>

#include "tests/support/loopback_server.h"

namespace labelcut::test {

class AnswerProxy {
public:
    /// One request that has arrived in full, and what the service answered.
    struct Exchange {
        /// As in ipp_op_t; 0 when the request is none of IPP.
        int operation = 0;
        /// The request's number, four bytes.
        QByteArray id;
        /// All of the service's answer, its HTTP header included; empty without a service.
        QByteArray answer;
    };
    /// What is sent instead, after which the connection is closed.
    struct Reply {
        QByteArray bytes;
        /// The connection is not closed before the other side does.
        bool staysOpen = false;
    };
    /// Runs on threads of the proxy's own, several at once.
    using Change = std::function<Reply(const Exchange&)>;

    /// @param socket  where the service listens; empty: there is none.
    AnswerProxy(QString socket, Change change);

    int port() const { return mServer.port(); }
    QString address() const { return mServer.address(); }
    /// From now on no request arrives any more; connections end without an answer.
    void cut() { mCut = true; }

private:
    void serve(int client) const;
    /// A request or answer with its body, or what came of it before the connection ended.
    QByteArray readMessage(int from) const;
    QByteArray answerOf(const QByteArray& request) const;
    void waitForEnd(int client) const;

    QString mSocket;
    Change mChange;
    std::atomic<bool> mCut = false;
    LoopbackServer mServer; ///< Last: its threads use the others.
};

/// An answer of HTTP 200. @param ipp  its body.
QByteArray httpWithIpp(const QByteArray& ipp);
/// An IPP answer of a status. @param id  four bytes. @param groups  what follows the header,
/// without the end.
QByteArray ippAnswer(int status, const QByteArray& id, const QByteArray& groups = {});
/// Bytes of a group of printer attributes with one collection, in which there are `depth` - 1
/// others within each other.
QByteArray nestedCollections(int depth);

} // namespace labelcut::test
