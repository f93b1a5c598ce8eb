// Worker's protocol: packets with descriptors beside them, over one end of a pair of sockets.
#include "worker/protocol/channel.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "worker/protocol/message.h"

namespace labelcut::worker {

namespace {

using Ancillary = std::array<char, CMSG_SPACE(kMostDescriptors * sizeof(int))>;

std::vector<Descriptor> descriptorsOf(msghdr& header) {
    std::vector<Descriptor> all;
    for (cmsghdr* part = CMSG_FIRSTHDR(&header); part; part = CMSG_NXTHDR(&header, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS)
            continue;
        const std::size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int number = -1;
            std::memcpy(&number, CMSG_DATA(part) + i * sizeof number, sizeof number);
            all.emplace_back(number);
        }
    }
    return all;
}

} // namespace

Channel makeChannel() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return {};
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

bool sendPacket(int end, std::string_view bytes, const std::vector<int>& descriptors) {
    if (descriptors.size() > kMostDescriptors || bytes.empty() || bytes.size() > kLargestMessage)
        return false;
    iovec piece{const_cast<char*>(bytes.data()), bytes.size()};
    msghdr header{};
    header.msg_iov = &piece;
    header.msg_iovlen = 1;
    alignas(cmsghdr) Ancillary ancillary{};
    if (!descriptors.empty()) {
        const std::size_t size = descriptors.size() * sizeof(int);
        header.msg_control = ancillary.data();
        header.msg_controllen = CMSG_SPACE(size);
        cmsghdr* part = CMSG_FIRSTHDR(&header);
        part->cmsg_level = SOL_SOCKET;
        part->cmsg_type = SCM_RIGHTS;
        part->cmsg_len = CMSG_LEN(size);
        std::memcpy(CMSG_DATA(part), descriptors.data(), size);
    }
    ssize_t sent = 0;
    do {
        sent = sendmsg(end, &header, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(bytes.size());
}

Reception receivePacket(int end, bool waits, Packet& packet) {
    packet.bytes.resize(kLargestMessage);
    iovec piece{packet.bytes.data(), packet.bytes.size()};
    msghdr header{};
    header.msg_iov = &piece;
    header.msg_iovlen = 1;
    alignas(cmsghdr) Ancillary ancillary{};
    header.msg_control = ancillary.data();
    header.msg_controllen = ancillary.size();
    ssize_t received = 0;
    do {
        received = recvmsg(end, &header, MSG_CMSG_CLOEXEC | (waits ? 0 : MSG_DONTWAIT));
    } while (received < 0 && errno == EINTR);
    if (received < 0 && !waits && (errno == EAGAIN || errno == EWOULDBLOCK))
        return Reception::Nothing;
    if (received <= 0)
        return Reception::Ended;
    packet.descriptors = descriptorsOf(header);
    packet.bytes.resize(static_cast<std::size_t>(received));
    return (header.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0 ? Reception::Ended
                                                              : Reception::Packet;
}

} // namespace labelcut::worker
