// The worker's protocol: packets and descriptors between two processes' ends.
#include "worker/protocol/channel.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "worker/protocol/message.h"

namespace labelcut::worker {

namespace {

bool isOpen(int number) {
    return fcntl(number, F_GETFD) >= 0;
}

} // namespace

TEST(ChannelTest, APacketArrivesWithItsDescriptorsWhichStayClosedInOtherPrograms) {
    const Channel channel = makeChannel();
    const Descriptor null(open("/dev/null", O_RDONLY));
    ASSERT_TRUE(sendPacket(channel.ours.number(), "two", {null.number(), null.number()}));
    ASSERT_TRUE(sendPacket(channel.ours.number(), "none"));
    Packet packet;
    ASSERT_EQ(receivePacket(channel.theirs.number(), true, packet), Reception::Packet);
    EXPECT_EQ(packet.bytes, "two");
    ASSERT_EQ(packet.descriptors.size(), 2U);
    EXPECT_EQ(fcntl(packet.descriptors[0].number(), F_GETFD), FD_CLOEXEC);
    ASSERT_EQ(receivePacket(channel.theirs.number(), true, packet), Reception::Packet);
    EXPECT_EQ(packet.bytes, "none");
    EXPECT_TRUE(packet.descriptors.empty());
    EXPECT_EQ(receivePacket(channel.theirs.number(), false, packet), Reception::Nothing);
}

TEST(ChannelTest, AnEndThatIsGoneIsTheEnd) {
    Channel channel = makeChannel();
    channel.theirs.close();
    Packet packet;
    EXPECT_EQ(receivePacket(channel.ours.number(), true, packet), Reception::Ended);
    EXPECT_FALSE(sendPacket(channel.ours.number(), "nobody"));
}

TEST(ChannelTest, APacketThatIsTooLargeIsTheEnd) {
    const Channel channel = makeChannel();
    const std::string large(kLargestMessage + 1, 'x');
    EXPECT_FALSE(sendPacket(channel.ours.number(), large)) << "we send none";
    ASSERT_GT(send(channel.ours.number(), large.data(), large.size(), 0), 0);
    Packet packet;
    EXPECT_EQ(receivePacket(channel.theirs.number(), true, packet), Reception::Ended);
}

TEST(ChannelTest, ADescriptorIsClosedOnce) {
    int number = -1;
    {
        Descriptor first(open("/dev/null", O_RDONLY));
        number = first.number();
        Descriptor second(std::move(first));
        EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): what is left of it is the question
        EXPECT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
}

} // namespace labelcut::worker
