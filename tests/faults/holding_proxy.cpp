// Faults: a way to a print service that can be held and cut in the middle of a document.
#include "tests/faults/holding_proxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>

namespace labelcut::test {

HoldingProxy::HoldingProxy(QString socketPath)
    : mSocket(std::move(socketPath))
    , mServer([this](int client) { pass(client); }) {}

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
        if (poll(ends.data(), ends.size(), LoopbackServer::kPoll) <= 0)
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
