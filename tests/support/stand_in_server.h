// Test support: a server on 127.0.0.1 that misbehaves in one way, to try time limits against.
#pragma once

#include <QByteArray>

#include <atomic>
#include <thread>
#include <vector>

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
    int port() const { return mPort; }
    /// How many connections it has accepted.
    int connections() const { return mConnections; }

private:
    void fillQueue();
    void serve();
    void serveOne(int client);
    /// Whether bytes (or the end) came before the server was stopped. @param discard  reads them.
    bool waitForInput(int client, bool discard);
    /// Reads what has come so far.
    static void drain(int client);
    static void pause(int milliseconds);

    Behaviour mBehaviour;
    QByteArray mAnswer;
    int mListener = -1;
    int mPort = 0;
    std::vector<int> mFillers;
    std::atomic<bool> mStopping = false;
    std::atomic<int> mConnections = 0;
    std::vector<std::thread> mClients;
    std::thread mThread;
};

} // namespace labelcut::test
