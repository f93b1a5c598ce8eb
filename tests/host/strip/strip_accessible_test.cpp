// What screen readers hear of the strip: a list of labels.
#include "host/strip/strip_accessible.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

#include "host/strip/strip_view.h"
#include "tests/host/strip/strip_plans.h"
#include "tests/support/expected_warnings.h"

namespace labelcut {

namespace {

using test::planOf;

class StripAccessibleTest : public testing::Test {
protected:
    void SetUp() override {
        mStrip = std::make_unique<StripView>();
        mStrip->resize(760, mStrip->sizeHint().height());
        show(12);
    }

    void show(int labels, bool isRead = true) {
        PlanInput input = planOf(labels);
        input.cuts->afterGroup = PDECut::Full;
        input.cuts->groupSize = 3;
        mStrip->setPlan(JobPlan(input), isRead);
    }
    QAccessibleInterface& list() { return *QAccessible::queryAccessibleInterface(mStrip.get()); }
    QString nameOf(int index) { return list().child(index)->text(QAccessible::Name); }
    void open() {
        mStrip->show();
        mStrip->activateWindow();
        mStrip->setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mStrip.get()));
    }

    std::unique_ptr<StripView> mStrip;

private:
    test::ExpectedWarning mComplaint{QStringLiteral("^This plugin does not support "),
                                     test::ExpectedWarning::Arrival::Possible};
};

TEST_F(StripAccessibleTest, ALabelSaysItsNumberAndWhatIsCutAfterIt) {
    EXPECT_EQ(list().role(), QAccessible::List);
    EXPECT_EQ(list().childCount(), 12);
    EXPECT_EQ(list().child(2)->role(), QAccessible::ListItem);
    EXPECT_EQ(nameOf(2), QStringLiteral("Label 3 of 12, full cut after it"));
    EXPECT_EQ(nameOf(3), QStringLiteral("Label 4 of 12, no cut after it"));
    EXPECT_EQ(list().indexOfChild(list().child(7)), 7);
    EXPECT_EQ(list().child(7)->parent(), &list());
    EXPECT_EQ(list().child(12), nullptr);
    EXPECT_EQ(list().child(-1), nullptr);
    EXPECT_TRUE(list().text(QAccessible::Description).startsWith(QStringLiteral("12 labels")));
}

TEST_F(StripAccessibleTest, TheListFollowsThePlan) {
    ASSERT_EQ(nameOf(2), QStringLiteral("Label 3 of 12, full cut after it"));
    show(3);
    EXPECT_EQ(list().childCount(), 3);
    EXPECT_EQ(nameOf(2), QStringLiteral("Label 3 of 3, full cut after it"));
}

/// What stands for a document that is not read yet is no label of it.
TEST_F(StripAccessibleTest, BlankPlacesAreNoLabels) {
    show(3, false);
    EXPECT_EQ(list().childCount(), 0);
    EXPECT_EQ(list().child(0), nullptr);
    EXPECT_TRUE(list().text(QAccessible::Description).isEmpty());
    mStrip->setPlan(std::nullopt);
    EXPECT_EQ(list().childCount(), 0);
}

TEST_F(StripAccessibleTest, LabelsAreWhereTheyAreDrawn) {
    open();
    for (const bool isReversed : {false, true}) {
        mStrip->setReversed(isReversed);
        const QRect first = list().child(0)->rect();
        EXPECT_EQ(first.topLeft(), mStrip->mapToGlobal(mStrip->rectOf(0).topLeft()));
        EXPECT_EQ(first.size(), mStrip->rectOf(0).size());
        const QPoint middle = first.center();
        EXPECT_EQ(list().childAt(middle.x(), middle.y()), list().child(0));
    }
    EXPECT_EQ(list().childAt(-5000, -5000), nullptr);
    ASSERT_TRUE(mStrip->rectOf(9).isNull());
    EXPECT_TRUE(list().child(9)->rect().isNull());
    EXPECT_TRUE(list().child(9)->state().offscreen);
    EXPECT_FALSE(list().child(0)->state().offscreen);
}

TEST_F(StripAccessibleTest, TheFocusIsOnTheLabelOfTheKeys) {
    EXPECT_EQ(list().focusChild(), nullptr);
    open();
    EXPECT_EQ(list().focusChild(), list().child(0));
    QTest::keyClick(mStrip.get(), Qt::Key_Right);
    EXPECT_EQ(list().focusChild(), list().child(1));
    EXPECT_TRUE(list().child(1)->state().focused);
    EXPECT_TRUE(list().child(1)->state().selected);
    EXPECT_FALSE(list().child(0)->state().focused);
}

TEST_F(StripAccessibleTest, AReaderOpensALabelAndMovesTheFocus) {
    open();
    const QSignalSpy wanted(mStrip.get(), &StripView::labelWanted);
    QAccessibleActionInterface* label = list().child(9)->actionInterface();
    ASSERT_NE(label, nullptr);
    EXPECT_TRUE(label->actionNames().contains(QAccessibleActionInterface::pressAction()));
    label->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_EQ(wanted.count(), 1);
    EXPECT_EQ(wanted.at(0).at(0).toLongLong(), 9);
    mStrip->clearFocus();
    label->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(mStrip->hasFocus());
    EXPECT_EQ(mStrip->current(), 9);
    EXPECT_FALSE(mStrip->rectOf(9).isNull());
    label->doAction(QStringLiteral("nothing that there is"));
    EXPECT_EQ(wanted.count(), 1);
}

TEST_F(StripAccessibleTest, ALabelThatIsGoneIsInvalidAndDoesNothing) {
    QAccessibleInterface* label = list().child(9);
    ASSERT_TRUE(label->isValid());
    const QSignalSpy wanted(mStrip.get(), &StripView::labelWanted);
    for (const bool isRead : {true, false}) {
        show(isRead ? 3 : 12, isRead);
        EXPECT_FALSE(label->isValid());
        EXPECT_TRUE(label->state().invalid);
        EXPECT_TRUE(label->text(QAccessible::Name).isEmpty());
        label->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        label->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    }
    EXPECT_EQ(wanted.count(), 0);
    EXPECT_EQ(mStrip->current(), 0);
}

std::size_t alive(const std::vector<QAccessible::Id>& ids) {
    return static_cast<std::size_t>(std::ranges::count_if(
        ids, [](QAccessible::Id id) { return QAccessible::accessibleInterface(id) != nullptr; }));
}

TEST_F(StripAccessibleTest, ReadingManyLabelsKeepsOnlySome) {
    show(20'000);
    const QAccessible::Id first = QAccessible::uniqueId(list().child(0));
    std::vector<QAccessible::Id> ids;
    for (int i = 0; i < 20'000; ++i)
        ids.push_back(QAccessible::uniqueId(list().child(i)));
    EXPECT_LE(alive(ids), AccessibleStrip::kMostItems);
    // Those in sight stay, and those that were dropped are made anew.
    EXPECT_EQ(QAccessible::uniqueId(list().child(0)), first);
    EXPECT_EQ(nameOf(600), QStringLiteral("Label 601 of 20,000, no cut after it"));
}

TEST_F(StripAccessibleTest, ABillionLabelsAreAsManyAsAListHas) {
    PlanInput input = planOf(30);
    input.copies = 100'000'000;
    mStrip->setPlan(JobPlan(input));
    EXPECT_EQ(list().childCount(), 2'147'483'647);
    EXPECT_TRUE(list().child(2'000'000'000)->isValid());
}

TEST_F(StripAccessibleTest, NothingOutlivesTheStrip) {
    std::vector<QAccessible::Id> ids{QAccessible::uniqueId(&list())};
    for (int i = 0; i < 12; ++i)
        ids.push_back(QAccessible::uniqueId(list().child(i)));
    ASSERT_EQ(alive(ids), ids.size());
    mStrip.reset();
    EXPECT_EQ(alive(ids), 0U);
}

} // namespace

} // namespace labelcut
