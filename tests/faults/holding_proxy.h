// Faults: a way to a print service that can be held and cut in the middle of a document.
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <mutex>

#include "tests/support/loopback_server.h"

namespace labelcut::test {

/// Passes connections on to a print service. A connection that sends more than kHeldAfter bytes is
/// no longer read from there on, so that a document larger than the buffers on its way stays
/// unfinished.
class HoldingProxy {
public:
    static constexpr qint64 kHeldAfter = 100'000;

    /// @param socket  where the print service listens.
    explicit HoldingProxy(QString socket);

    int port() const { return mServer.port(); }
    QString address() const { return mServer.address(); }
    /// Whether a document is held in its middle.
    bool isHolding() const { return mHolding; }
    /// From now on the answers to GET requests for `path` stop after so many bytes, while all else
    /// goes its way; see also silenced(). An empty path ends that for new connections.
    void silence(const QByteArray& path, qint64 after = 0);
    /// How many requests have been met by silence.
    int silenced() const { return mSilenced; }
    /// Holds nothing any more: documents go on to their end.
    void release() { mReleased = true; }
    /// Ends the connections that are held, as a service does that dies; later ones are passed on.
    void cut() { mCut = true; }

private:
    void pass(int client) const;
    /// How many bytes of the answer to this request are passed on.
    qint64 limitFor(const QByteArray& request) const;
    bool isOver(bool held) const { return mServer.isStopping() || (held && mCut); }

    QString mSocket;
    std::atomic<bool> mCut = false;
    std::atomic<bool> mReleased = false;
    mutable std::atomic<bool> mHolding = false;
    mutable std::atomic<int> mSilenced = 0;
    mutable std::mutex mSilence; ///< Guards the two below.
    QByteArray mSilentPath;
    qint64 mSilentAfter = 0;
    LoopbackServer mServer; ///< Last: its threads use the others.
};

} // namespace labelcut::test
