// Test support: a server on 127.0.0.1, to be given a behaviour.
#include "tests/support/loopback_server.h"

#include <QFile>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

namespace labelcut::test {

LoopbackServer::LoopbackServer(std::function<void(int)> serve)
    : mServe(std::move(serve)) {
    mListener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    const int backlog = mServe ? 16 : 0;
    if (bind(mListener, generic, length) != 0 || listen(mListener, backlog) != 0 ||
        getsockname(mListener, generic, &length) != 0)
        return;
    mPort = ntohs(address.sin_port);
    if (mServe)
        mThread = std::thread([this] { accept(); });
}

LoopbackServer::~LoopbackServer() {
    mStopping = true;
    if (mThread.joinable())
        mThread.join();
    for (std::thread& client : mClients)
        client.join();
    close(mListener);
}

void LoopbackServer::accept() {
    while (!mStopping) {
        pollfd waiting{mListener, POLLIN, 0};
        if (poll(&waiting, 1, kPoll) <= 0)
            continue;
        const int client = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            continue;
        mClients.emplace_back([this, client] {
            mServe(client);
            close(client);
        });
    }
}

int connectedTo(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return server;
    close(server);
    return -1;
}

bool sendAll(int to, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t sent = send(to, bytes, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes += sent;
        size -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace labelcut::test
