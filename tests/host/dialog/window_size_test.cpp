// The window on its screen, whatever the font; the scale is the environment's.
#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QTest>

#include "host/dialog/message_bar.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

class WindowSizeTest : public testing::TestWithParam<double> {
protected:
    WindowSizeTest() {
        QFont font = mBefore;
        font.setPointSizeF(GetParam());
        QApplication::setFont(font);
    }
    ~WindowSizeTest() override { QApplication::setFont(mBefore); }

    void expectButtonsInReach(const PrintDialog& dialog) const {
        const QRect screen = dialog.screen()->availableGeometry();
        EXPECT_LE(dialog.frameGeometry().width(), screen.width());
        EXPECT_LE(dialog.frameGeometry().height(), screen.height());
        for (const char* name : {"reset", "undo", "print", "cancel"}) {
            const auto* button = part<QPushButton>(dialog, name);
            const QRect place(button->mapTo(&dialog, QPoint()), button->size());
            EXPECT_TRUE(dialog.rect().contains(place)) << name;
            EXPECT_EQ(button->visibleRegion().boundingRect(), button->rect()) << name;
            EXPECT_GE(button->width(), button->minimumSizeHint().width()) << name;
        }
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    const QFont mBefore = QApplication::font();
};

} // namespace

TEST_P(WindowSizeTest, TheFirstWindowFitsTheScreenWithItsButtons) {
    for (const QString& ppd : {kTapePpd, kRollPpd}) {
        const auto dialog = openDialog(ppd);
        expectButtonsInReach(*dialog);
        for (int tab = 0; tab < dialog->tabs().count(); ++tab) {
            openTab(*dialog, tab);
            expectButtonsInReach(*dialog);
        }
    }
}

TEST_P(WindowSizeTest, MessagesDoNotPushTheButtonsOffTheScreen) {
    const auto dialog = openDialog(kTapePpd);
    for (int i = 0; i < 6; ++i)
        Q_EMIT dialog->model().told(QStringLiteral("Sentence %1 says something at length, so that "
                                                   "it takes several lines in a narrow window.")
                                        .arg(i));
    settle();
    ASSERT_FALSE(dialog->messages().texts().isEmpty());
    expectButtonsInReach(*dialog);
}

TEST_P(WindowSizeTest, TheTabKeyScrollsToWhatHasTheFocus) {
    const auto dialog = openDialog(kTapePpd);
    part<QPushButton>(*dialog, "chooseFiles")->setFocus();
    for (int i = 0; i < 40; ++i) {
        QWidget* focus = QApplication::focusWidget();
        ASSERT_TRUE(focus);
        EXPECT_FALSE(focus->visibleRegion().isEmpty()) << focus->objectName().toStdString();
        QTest::keyClick(focus, Qt::Key_Tab);
        settle();
    }
}

INSTANTIATE_TEST_SUITE_P(Fonts, WindowSizeTest, testing::Values(9.0, 13.0, 17.0));

} // namespace labelcut::test
