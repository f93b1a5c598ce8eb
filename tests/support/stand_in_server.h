// Test support: a server on 127.0.0.1 that misbehaves in one way, to try time limits against.
#pragma once

#include <QByteArray>

#include <atomic>
#include <vector>

#include "tests/support/loopback_server.h"

namespace labelcut::test {

class StandInServer {
public:
    enum class Behaviour {
        NotAccepting,  ///< Its queue of connections is full: nobody gets through.
        Silent,        ///< Reads all it is sent and never answers.
        NotReading,    ///< Accepts, and never reads or answers.
        ClosingAtOnce, ///< Ends each connection as soon as something was sent.
        Answering,     ///< Answers each connection's first bytes with answer() and closes.
        Trickling,     ///< Like Answering, one byte every 20 milliseconds, and then never closes.
    };

    /// @param answer  bytes for Answering and Trickling, HTTP header included.
    explicit StandInServer(Behaviour behaviour, QByteArray answer = {});
    ~StandInServer();
    StandInServer(const StandInServer&) = delete;
    StandInServer& operator=(const StandInServer&) = delete;

    /// 0 when it could not be started.
    int port() const { return mServer.port(); }
    /// How many connections it has accepted.
    int connections() const { return mConnections; }

private:
    void fillQueue();
    void serve(int client);
    /// Whether bytes (or the end) came before the server was stopped. @param discard  reads them.
    bool waitForInput(int client, bool discard);
    /// Reads what has come so far.
    static void drain(int client);
    static void pause(int milliseconds);

    Behaviour mBehaviour;
    QByteArray mAnswer;
    std::vector<int> mFillers;
    std::atomic<int> mConnections = 0;
    /// The last one: it serves, by all of the above, until it goes.
    LoopbackServer mServer;
};

} // namespace labelcut::test
