// The dialog keeps answering its user, whatever the print service does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QTest>

#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/one_truth.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/stand_in_server.h"

namespace labelcut::test {

namespace {

/// Milliseconds between two ticks of the event loop at most, on a busy machine; a blocking call
/// takes many times as long.
constexpr qint64 kLongestPause = 3'000;
constexpr int kManyQueues = 1'000;

CupsConnection serviceAt(int port) {
    return CupsConnection(*ServiceAddress::fromText(QStringLiteral("127.0.0.1:%1").arg(port)));
}

class PatienceTest : public testing::TestWithParam<StandInServer::Behaviour> {
protected:
    Offscreen mOffscreen;
    PrivateHome mHome;
};

QByteArray printersConf(int count) {
    QByteArray all;
    for (int i = 0; i < count; ++i)
        all += "<Printer queue" + QByteArray::number(i) +
               ">\nDeviceURI file:///dev/null\nState Idle\nAccepting Yes\n</Printer>\n";
    return all;
}

} // namespace

TEST_P(PatienceTest, ClicksAreAnsweredWhileTheServiceIsWaitedFor) {
    const StandInServer server(GetParam());
    ASSERT_GT(server.port(), 0);
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    Pulse pulse;
    const auto dialog = openDialog(request, serviceAt(server.port()));
    // Long enough for a call that blocks to show.
    for (int i = 0; i < 10; ++i) {
        auto* box = part<QCheckBox>(*dialog, "mHalfCutChkBx");
        const bool before = box->isChecked();
        click(*box);
        EXPECT_NE(box->isChecked(), before);
        expectOneTruth(*dialog);
        turnFor(150);
    }
    EXPECT_GT(pulse.ticks(), 50);
    EXPECT_LT(pulse.longestPause(), kLongestPause);
    // Nor does it wait for the service when it goes.
    EXPECT_LT(timeOf([&] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }), kLongestPause);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_P(PatienceTest, WithoutAPrinterTheWindowCanBeUsedAndClosed) {
    const StandInServer server(GetParam());
    ASSERT_GT(server.port(), 0);
    DialogRequest request;
    request.files = {kLabels};
    Pulse pulse;
    auto dialog = openDialog(request, serviceAt(server.port()));
    turnFor(500);
    EXPECT_TRUE(turnUntil([&] { return dialog->model().pageCount() > 0; }));
    EXPECT_GT(pulse.ticks(), 10);
    EXPECT_LT(pulse.longestPause(), kLongestPause);
    EXPECT_LT(timeOf([&] { dialog.reset(); }), kLongestPause);
}

INSTANTIATE_TEST_SUITE_P(Services, PatienceTest,
                         testing::Values(StandInServer::Behaviour::NotAccepting,
                                         StandInServer::Behaviour::Silent,
                                         StandInServer::Behaviour::NotReading,
                                         StandInServer::Behaviour::ClosingAtOnce));

TEST(ManyQueuesTest, AThousandAppearAndTheWindowKeepsTurning) {
    const Offscreen offscreen;
    const PrivateHome home;
    PrivateCupsd::Options options;
    options.printers = printersConf(kManyQueues);
    PrivateCupsd service(options);
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    Pulse pulse;
    const auto dialog =
        openDialog(request, CupsConnection(*ServiceAddress::fromText(service.socketPath())));
    auto* printers = part<QComboBox>(*dialog, "printers");
    ASSERT_TRUE(turnUntil([&] { return printers->count() > kManyQueues; }));
    EXPECT_LT(pulse.longestPause(), kLongestPause);
    EXPECT_TRUE(printers->currentText().contains(QStringLiteral("tape.ppd"))) << "still in force";
    click(*part<QCheckBox>(*dialog, "mHalfCutChkBx"));
    expectOneTruth(*dialog);
    printers->showPopup();
    settle();
    EXPECT_TRUE(printers->view()->isVisible());
    printers->hidePopup();
    EXPECT_LT(pulse.longestPause(), kLongestPause);
}

} // namespace labelcut::test
