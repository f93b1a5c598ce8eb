// Tests of the base panel: how its view gets a size, and when the host hears of it.
#include "plugins/cut_options/frame/base_pde.h"

#include <gtest/gtest.h>

#include <QTest>

#include "platform/toolkit/notification_centre.h"
#include "platform/toolkit/points.h"
#include "tests/plugins/cut_options/frame/recording_panel.h"

namespace labelcut::test {
namespace {

NotificationCentre& centre() {
    return NotificationCentre::defaultCentre();
}

/// A panel with its view, and a window that can become the key window.
class ViewSize : public testing::Test {
protected:
    ViewSize() {
        setting.construct();
        view = setting.panel->panelView();
        registrations = centre().observerCount();
    }

    /// Makes the window the key window. @return its frame's height in the view's points.
    double makeKeyWindow() {
        window.resize(500, 400);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        EXPECT_EQ(QApplication::activeWindow(), &window);
        return window.frameGeometry().height() / points::scale(*view);
    }
    Size viewSize() const { return View(view).frame().size; }
    int added() const { return centre().observerCount() - registrations; }
    void postTracking(QObject* about) const {
        centre().post(QLatin1String(kViewDidUpdateTrackingAreas), QVariant::fromValue(about));
    }

    RecordingPanelOnHost setting;
    QWidget window;
    QWidget* view = nullptr;
    int registrations = 0;
};

TEST_F(ViewSize, IsLeftAloneWhenTheHostDoesNotListen) {
    makeKeyWindow();
    setting.host->responds = false;
    setting.panel->setViewFrameSize({123, 45});
    EXPECT_EQ(viewSize(), (Size{300, 200}));
    EXPECT_EQ(setting.host->resized, 0);
    EXPECT_EQ(added(), 0);
}

TEST_F(ViewSize, IsSetAndNobodyToldWithoutAKeyWindow) {
    ASSERT_FALSE(QApplication::activeWindow());
    setting.panel->setViewFrameSize({310, 180});
    EXPECT_EQ(viewSize(), (Size{310, 180}));
    EXPECT_EQ(setting.host->resized, 0);
    EXPECT_EQ(added(), 0);
}

TEST_F(ViewSize, IsToldAtOnceInAWindowMoreThan96PointsTaller) {
    const double frame = makeKeyWindow();
    setting.panel->setViewFrameSize({310, frame - 96.5});
    EXPECT_EQ(viewSize(), (Size{310, frame - 96.5}));
    EXPECT_EQ(setting.host->resized, 1);
    EXPECT_EQ(added(), 0);
    postTracking(view);
    EXPECT_EQ(setting.host->resized, 1);
}

TEST_F(ViewSize, WaitsInAWindowExactly96PointsTaller) {
    const double frame = makeKeyWindow();
    ASSERT_EQ(frame - 96.0 + 96.0, frame);
    setting.panel->setViewFrameSize({310, frame - 96.0});
    EXPECT_EQ(viewSize(), (Size{310, frame - 96.0}));
    EXPECT_EQ(setting.host->resized, 0);
    EXPECT_EQ(added(), 1);
}

TEST_F(ViewSize, WaitsInASmallerWindow) {
    const double frame = makeKeyWindow();
    setting.panel->setViewFrameSize({310, frame + 200});
    EXPECT_EQ(setting.host->resized, 0);
    EXPECT_EQ(added(), 1);
}

TEST_F(ViewSize, IsToldOnceByTheFirstTrackingUpdateOfTheView) {
    const double frame = makeKeyWindow();
    setting.panel->setViewFrameSize({310, frame});
    ASSERT_EQ(added(), 1);

    postTracking(&window);
    postTracking(nullptr);
    centre().post(QStringLiteral("AnotherNotification"), QVariant::fromValue<QObject*>(view));
    EXPECT_EQ(setting.host->resized, 0) << "neither of another view nor another notice";

    postTracking(view);
    EXPECT_EQ(setting.host->resized, 1);
    EXPECT_EQ(added(), 0) << "the registration is removed";
    postTracking(view);
    EXPECT_EQ(setting.host->resized, 1);
}

TEST_F(ViewSize, IsToldWhenTheViewIsReallyShown) {
    const double frame = makeKeyWindow();
    setting.panel->setViewFrameSize({310, frame});
    ASSERT_EQ(setting.host->resized, 0);
    view->setParent(&window);
    view->show();
    EXPECT_EQ(setting.host->resized, 1);
    EXPECT_EQ(added(), 0);
}

TEST_F(ViewSize, SetTwiceWhileCollapsedIsToldOnce) {
    const double frame = makeKeyWindow();
    setting.panel->setViewFrameSize({310, frame});
    setting.panel->setViewFrameSize({320, frame});
    postTracking(view);
    EXPECT_EQ(setting.host->resized, 1);
    EXPECT_EQ(added(), 0);
}

TEST_F(ViewSize, RemovesExactlyItsOwnRegistration) {
    const double frame = makeKeyWindow();
    int heard = 0;
    QObject other;
    const QVariant about = QVariant::fromValue<QObject*>(view);
    const QString name = QLatin1String(kViewDidUpdateTrackingAreas);
    const auto count = [&](const Notification&) { ++heard; };
    centre().addObserver(&other, name, about, count);
    centre().addObserver(setting.panel.get(), QStringLiteral("AnotherNotification"), about, count);
    centre().addObserver(setting.panel.get(), name, QVariant::fromValue<QObject*>(&window), count);
    setting.panel->setViewFrameSize({310, frame});

    postTracking(view);
    EXPECT_EQ(heard, 1) << "somebody else's observer of the same notice hears it too";
    EXPECT_EQ(added(), 3) << "and the panel's other registrations stay";
    setting.panel->dialogDidExpand();
    EXPECT_EQ(added(), 3);
}

TEST_F(ViewSize, DialogDidExpandTellsTheHostByItself) {
    setting.panel->dialogDidExpand();
    EXPECT_EQ(setting.host->resized, 1);
}

TEST_F(ViewSize, OfAPanelThatIsGoneIsNobodysBusiness) {
    const double frame = makeKeyWindow();
    setting.panel->setViewFrameSize({310, frame});
    ASSERT_EQ(added(), 1);
    setting.panel.reset();
    EXPECT_EQ(added(), 0);
    EXPECT_EQ(setting.host->resized, 0);
}

} // namespace
} // namespace labelcut::test
