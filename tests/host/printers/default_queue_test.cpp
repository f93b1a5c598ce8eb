// The queue that is meant when none is named, asked of a real scheduler.
#include "host/printers/default_queue.h"

#include <gtest/gtest.h>

#include "tests/support/private_cupsd.h"
#include "tests/support/surroundings.h"

namespace labelcut::test {

namespace {

const QString kTinyPpd = QStringLiteral(LABELCUT_TEST_DATA "/tiny_tape.ppd");
constexpr int kLong = 30'000;

/// Of an environment that says nothing but what the test makes it say.
class DefaultQueueTest : public testing::Test {
protected:
    std::optional<Destination> found(const CupsConnection& service) const {
        const auto queue = defaultQueue(service, mSaved, {kLong, nullptr});
        EXPECT_TRUE(queue) << queue.error().sentence.toStdString();
        return queue ? *queue : std::nullopt;
    }

    const Environment mNoDestination{"LPDEST", ""};
    const Environment mNoPrinter{"PRINTER", ""};
    const CupsConnection mNowhere{{QStringLiteral("/nonexistent/cups.sock")}};
    SavedOptions mSaved;
};

} // namespace

TEST_F(DefaultQueueTest, TheEnvironmentComesBeforeSavedOptionsAndNeedsNoService) {
    mSaved.defaultDestination = Destination{QStringLiteral("saved"), QString()};
    EXPECT_EQ(found(mNowhere), mSaved.defaultDestination);
    const Environment printer("PRINTER", "desk");
    EXPECT_EQ(found(mNowhere), (Destination{QStringLiteral("desk"), QString()}));
    const Environment destination("LPDEST", "shelf/draft");
    EXPECT_EQ(found(mNowhere), (Destination{QStringLiteral("shelf"), QStringLiteral("draft")}));
}

TEST_F(DefaultQueueTest, WithoutEitherTheServiceIsAsked) {
    PrivateCupsd cupsd;
    ASSERT_TRUE(cupsd.start()) << cupsd.errorLog().toStdString();
    ASSERT_TRUE(cupsd.addQueue(QStringLiteral("tape"), kTinyPpd));
    const CupsConnection service({cupsd.socketPath()});
    EXPECT_EQ(found(service), std::nullopt);
    ASSERT_TRUE(cupsd.makeDefault(QStringLiteral("tape")));
    EXPECT_EQ(found(service), (Destination{QStringLiteral("tape"), QString()}));
}

TEST_F(DefaultQueueTest, AServiceThatCannotBeAskedIsAFailureAndNotNoDefault) {
    const auto queue = defaultQueue(mNowhere, mSaved, {kLong, nullptr});
    ASSERT_FALSE(queue);
    EXPECT_EQ(queue.error().kind, ErrorKind::NoService);
}

} // namespace labelcut::test
