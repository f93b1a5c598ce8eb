// Test support: a server on 127.0.0.1, to be given a behaviour, and the sockets it talks by.
#pragma once

#include <QString>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace labelcut::test {

class LoopbackServer {
public:
    static constexpr int kPoll = 10; ///< Milliseconds after which those who wait look around.

    /// @param serve  called for each connection on a thread of its own; it returns soon once
    ///               isStopping(), and the connection is closed then. Empty: no connection is
    ///               accepted, and only one waits.
    explicit LoopbackServer(std::function<void(int client)> serve);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// 0 when it could not be started.
    int port() const { return mPort; }
    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(mPort); }
    bool isStopping() const { return mStopping; }

private:
    void accept();

    std::function<void(int client)> mServe;
    int mListener = -1;
    int mPort = 0;
    std::atomic<bool> mStopping = false;
    std::vector<std::thread> mClients;
    std::thread mThread;
};

/// A connection to a socket in the file system; -1 when nobody serves it.
int connectedTo(const QString& path);
/// @return false when the other side is gone.
bool sendAll(int to, const char* bytes, std::size_t size);

} // namespace labelcut::test
