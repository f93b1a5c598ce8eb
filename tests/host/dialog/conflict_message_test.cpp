// What is said when choices exclude each other: the conflict at once, the way out when it is found.
#include "host/dialog/conflict_message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/dialog/job_model.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

const QString kFix = QStringLiteral("Set Print density");

class ConflictMessageTest : public testing::Test {
protected:
    ConflictMessageTest() {
        mBar.setParent(&mWindow);
        mWindow.show();
        mModel.adopt(openedPpd(conflictingPpd(mHome)));
        QObject::connect(&mModel, &JobModel::fixSearched, [this] {
            completeConflict(mModel, mBar);
            ++mSearches;
        });
        mModel.choose(QStringLiteral("Density"), QStringLiteral("Dark"));
        mModel.choose(QStringLiteral("Quality"), QStringLiteral("Best"));
    }
    /// Until then nothing that was found can arrive.
    void awaitSearch() {
        ASSERT_TRUE(turnUntil([this] { return !mModel.isSearchingFix(); }));
        settle();
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    QWidget mWindow;
    MessageBar mBar;
    JobModel mModel;
    int mSearches = 0;
};

} // namespace

TEST_F(ConflictMessageTest, TheConflictIsNamedBeforeTheWayOutIsFound) {
    showConflict(mModel, mBar);
    EXPECT_TRUE(mModel.isSearchingFix());
    EXPECT_EQ(mBar.texts(), QStringList(mModel.conflictSentence()));
    EXPECT_FALSE(offer(mBar, kFix));
    QPushButton* undo = offer(mBar, QStringLiteral("Undo"));
    EXPECT_TRUE(undo);
    awaitSearch();
    EXPECT_TRUE(offer(mBar, kFix));
    EXPECT_EQ(offer(mBar, QStringLiteral("Undo")), undo) << "where it was";
}

TEST_F(ConflictMessageTest, ARefreshOfTheSameConflictKeepsItsWayOut) {
    showConflict(mModel, mBar);
    awaitSearch();
    QPushButton* fix = offer(mBar, kFix);
    ASSERT_TRUE(fix);
    for (int i = 0; i < 3; ++i) {
        mModel.setCopies(2 + i);
        showConflict(mModel, mBar);
        EXPECT_EQ(offer(mBar, kFix), fix);
    }
    awaitSearch();
    EXPECT_EQ(mSearches, 1);
}

TEST_F(ConflictMessageTest, AWayOutForOtherChoicesIsNotOffered) {
    showConflict(mModel, mBar);
    awaitSearch();
    mModel.choose(QStringLiteral("KvHalfCut"), QStringLiteral("ON"));
    showConflict(mModel, mBar);
    EXPECT_FALSE(offer(mBar, kFix));
    awaitSearch();
    EXPECT_EQ(mSearches, 2);
    EXPECT_TRUE(offer(mBar, QStringLiteral("Set Quality"))) << "the first side stands";
}

TEST_F(ConflictMessageTest, AMessageThatIsDismissedDuringTheSearchStaysAway) {
    showConflict(mModel, mBar);
    mBar.remove(QStringLiteral("conflict"));
    awaitSearch();
    EXPECT_EQ(mSearches, 1);
    EXPECT_TRUE(mBar.texts().isEmpty());
    showConflict(mModel, mBar);
    EXPECT_TRUE(offer(mBar, kFix)) << "found meanwhile";
}

TEST_F(ConflictMessageTest, TheWayOutThatIsOfferedIsTaken) {
    showConflict(mModel, mBar);
    awaitSearch();
    QPushButton* fix = offer(mBar, kFix);
    ASSERT_TRUE(fix);
    click(*fix);
    EXPECT_TRUE(mModel.conflicts().empty());
    showConflict(mModel, mBar);
    EXPECT_TRUE(mBar.texts().isEmpty());
}

} // namespace labelcut::test
