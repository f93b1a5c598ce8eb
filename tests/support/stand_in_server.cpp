// Test support: a server that misbehaves in one way.
#include "tests/support/stand_in_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>

namespace labelcut::test {

namespace {

constexpr int kPoll = 10; // milliseconds

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

} // namespace

StandInServer::StandInServer(Behaviour behaviour, QByteArray answer)
    : mBehaviour(behaviour)
    , mAnswer(std::move(answer)) {
    mListener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    const int backlog = behaviour == Behaviour::NotAccepting ? 0 : 16;
    if (bind(mListener, generic, length) != 0 || listen(mListener, backlog) != 0 ||
        getsockname(mListener, generic, &length) != 0)
        return;
    mPort = ntohs(address.sin_port);
    if (behaviour == Behaviour::NotAccepting)
        fillQueue();
    else
        mThread = std::thread([this] { serve(); });
}

StandInServer::~StandInServer() {
    mStopping = true;
    if (mThread.joinable())
        mThread.join();
    for (std::thread& client : mClients)
        client.join();
    for (const int filler : mFillers)
        close(filler);
    close(mListener);
}

void StandInServer::fillQueue() {
    const sockaddr_in address = loopback(mPort);
    for (int i = 0; i < 4; ++i) {
        const int filler = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        // Non-blocking: those that no longer fit wait in vain, like everybody after them.
        static_cast<void>(
            connect(filler, reinterpret_cast<const sockaddr*>(&address), sizeof address));
        mFillers.push_back(filler);
    }
    pause(50);
}

void StandInServer::serve() {
    while (!mStopping) {
        pollfd waiting{mListener, POLLIN, 0};
        if (poll(&waiting, 1, kPoll) <= 0)
            continue;
        const int client = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            continue;
        ++mConnections;
        mClients.emplace_back([this, client] {
            serveOne(client);
            close(client);
        });
    }
}

void StandInServer::serveOne(int client) {
    const bool reads = mBehaviour != Behaviour::NotReading;
    if (!waitForInput(client, reads) || mBehaviour == Behaviour::ClosingAtOnce)
        return;
    if (mBehaviour == Behaviour::Answering) {
        // What was sent after the first bytes is read as well: closing over unread bytes would
        // reset the connection and take the answer with it.
        pause(50);
        drain(client);
        static_cast<void>(
            send(client, mAnswer.constData(), std::size_t(mAnswer.size()), MSG_NOSIGNAL));
        shutdown(client, SHUT_WR);
        pause(50);
        return;
    }
    qsizetype sent = 0;
    while (!mStopping) {
        if (mBehaviour == Behaviour::Trickling && sent < mAnswer.size())
            static_cast<void>(send(client, mAnswer.constData() + sent++, 1, MSG_NOSIGNAL));
        if (reads)
            drain(client);
        pause(20);
    }
}

bool StandInServer::waitForInput(int client, bool discard) {
    while (!mStopping) {
        pollfd waiting{client, POLLIN, 0};
        if (poll(&waiting, 1, kPoll) <= 0)
            continue;
        if (!discard)
            return true;
        std::array<char, 64 * 1024> bytes;
        return recv(client, bytes.data(), bytes.size(), 0) > 0;
    }
    return false;
}

void StandInServer::drain(int client) {
    std::array<char, 64 * 1024> bytes;
    while (recv(client, bytes.data(), bytes.size(), MSG_DONTWAIT) > 0) {
    }
}

void StandInServer::pause(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

} // namespace labelcut::test
