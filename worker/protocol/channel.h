// Worker's protocol: packets with descriptors beside them, over one end of a pair of sockets.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "worker/protocol/descriptor.h"

namespace labelcut::worker {

/// Where the worker finds its end.
inline constexpr int kWorkersEnd = 3;
/// The most descriptors that one packet carries.
inline constexpr std::size_t kMostDescriptors = 2;

struct Packet {
    std::string bytes;
    std::vector<Descriptor> descriptors;
};

/// Two ends that carry packets both ways, closed in programs that are started; no ends when the
/// system gives none.
struct Channel {
    Descriptor ours;
    Descriptor theirs;
};
Channel makeChannel();

/// Sends one packet. @param descriptors  borrowed; at most kMostDescriptors. @return whether it
/// went; the other side may be gone.
bool sendPacket(int end, std::string_view bytes, const std::vector<int>& descriptors = {});

enum class Reception { Packet, Nothing, Ended };
/// Receives the packet that waits. @param waits  until one comes; otherwise Nothing when none does.
/// A packet larger than kLargestMessage, or with more descriptors, counts as the end.
Reception receivePacket(int end, bool waits, Packet& packet);

} // namespace labelcut::worker
