// Faults: a way to a print service that can be held and cut in the middle of a document.
#include "tests/faults/holding_proxy.h"

#include <QFile>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace labelcut::test {

namespace {

constexpr int kPoll = 10; // milliseconds

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

} // namespace

HoldingProxy::HoldingProxy(QString socketPath)
    : mSocket(std::move(socketPath)) {
    mListener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    if (bind(mListener, generic, length) != 0 || listen(mListener, 16) != 0 ||
        getsockname(mListener, generic, &length) != 0)
        return;
    mPort = ntohs(address.sin_port);
    mThread = std::thread([this] { serve(); });
}

HoldingProxy::~HoldingProxy() {
    mStopping = true;
    if (mThread.joinable())
        mThread.join();
    for (std::thread& client : mClients)
        client.join();
    close(mListener);
}

void HoldingProxy::serve() {
    while (!mStopping) {
        pollfd waiting{mListener, POLLIN, 0};
        if (poll(&waiting, 1, kPoll) <= 0)
            continue;
        const int client = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            continue;
        mClients.emplace_back([this, client] {
            pass(client);
            close(client);
        });
    }
}

void HoldingProxy::silence(const QByteArray& path, qint64 after) {
    const std::lock_guard lock(mSilence);
    mSilentPath = path;
    mSilentAfter = after;
}

qint64 HoldingProxy::limitFor(const QByteArray& request) const {
    const std::lock_guard lock(mSilence);
    if (mSilentPath.isEmpty() || !request.startsWith("GET " + mSilentPath + ' '))
        return std::numeric_limits<qint64>::max();
    ++mSilenced;
    return mSilentAfter;
}

void HoldingProxy::pass(int client) const {
    const int server = connectedTo(mSocket);
    if (server < 0)
        return;
    std::array<char, 16 * 1024> bytes;
    qint64 passed = 0;
    qint64 answered = 0;
    qint64 limit = std::numeric_limits<qint64>::max();
    bool held = false;
    while (!isOver(held)) {
        const bool silent = answered >= limit;
        held = held && !mReleased;
        std::array<pollfd, 2> ends{pollfd{silent ? -1 : server, POLLIN, 0},
                                   pollfd{client, static_cast<short>(held ? 0 : POLLIN), 0}};
        if (poll(ends.data(), ends.size(), kPoll) <= 0)
            continue;
        if (held && (ends[1].revents & (POLLHUP | POLLERR)))
            break; // the sender has given up
        const bool fromServer = (ends[0].revents & (POLLIN | POLLHUP)) != 0;
        if (!fromServer && ends[1].revents == 0)
            continue;
        const auto room = static_cast<qint64>(bytes.size());
        const qint64 most = fromServer ? std::min(room, limit - answered) : room;
        const ssize_t got =
            recv(fromServer ? server : client, bytes.data(), static_cast<std::size_t>(most), 0);
        if (!fromServer && passed == 0 && got > 0)
            limit = limitFor({bytes.data(), got});
        answered += fromServer ? got : 0;
        if (got <= 0 ||
            !sendAll(fromServer ? client : server, bytes.data(), static_cast<std::size_t>(got)))
            break;
        passed += fromServer ? 0 : got;
        held = passed > kHeldAfter && !mReleased;
        if (held)
            mHolding = true;
    }
    close(server);
}

} // namespace labelcut::test
