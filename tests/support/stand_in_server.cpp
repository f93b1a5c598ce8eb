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

using Behaviour = StandInServer::Behaviour;

std::function<void(int)> serviceOf(Behaviour behaviour, std::function<void(int)> serve) {
    return behaviour == Behaviour::NotAccepting ? nullptr : std::move(serve);
}

} // namespace

StandInServer::StandInServer(Behaviour behaviour, QByteArray answer)
    : mBehaviour(behaviour)
    , mAnswer(std::move(answer))
    , mServer(serviceOf(behaviour, [this](int client) { serve(client); })) {
    if (behaviour == Behaviour::NotAccepting)
        fillQueue();
}

StandInServer::~StandInServer() {
    for (const int filler : mFillers)
        close(filler);
}

void StandInServer::fillQueue() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port()));
    for (int i = 0; i < 4; ++i) {
        const int filler = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        // Non-blocking: those that no longer fit wait in vain, like everybody after them.
        static_cast<void>(
            connect(filler, reinterpret_cast<const sockaddr*>(&address), sizeof address));
        mFillers.push_back(filler);
    }
    pause(50);
}

void StandInServer::serve(int client) {
    ++mConnections;
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
    while (!mServer.isStopping()) {
        if (mBehaviour == Behaviour::Trickling && sent < mAnswer.size())
            static_cast<void>(send(client, mAnswer.constData() + sent++, 1, MSG_NOSIGNAL));
        if (reads)
            drain(client);
        pause(20);
    }
}

bool StandInServer::waitForInput(int client, bool discard) {
    while (!mServer.isStopping()) {
        pollfd waiting{client, POLLIN, 0};
        if (poll(&waiting, 1, LoopbackServer::kPoll) <= 0)
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
