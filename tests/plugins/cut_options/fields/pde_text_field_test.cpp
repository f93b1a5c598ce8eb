#include "plugins/cut_options/fields/pde_text_field.h"

#include "platform/toolkit/notification_centre.h"
#include "plugins/cut_options/fields/interface_fields.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace labelcut;

namespace {

class PDETextField : public testing::Test {
protected:
    PDETextField() {
        NotificationCentre::defaultCentre().addObserver(
            &observer, QStringLiteral("TextFieldResignFirstResponderNotification"), {},
            [this](const Notification& n) { objects.push_back(n.object.value<QObject*>()); });
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        other.setFocus();
    }

    QWidget window;
    QLineEdit other{&window};
    PDETextField13_v400_ field{&window};
    QObject observer;
    std::vector<QObject*> objects;
};

TEST_F(PDETextField, PostsOnceForOneTypedCharacterWithItselfAsObject) {
    QTest::keyClicks(&field, QStringLiteral("a"));
    EXPECT_EQ(objects, std::vector<QObject*>{&field});
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(objects.size(), 2u);
    EXPECT_EQ(field.text(), QString());
}

TEST_F(PDETextField, PostsNothingWhenItIsClickedAndTabbedOutOf) {
    QTest::mouseClick(&field, Qt::LeftButton);
    ASSERT_TRUE(field.hasFocus());
    QTest::keyClick(&field, Qt::Key_Tab);
    EXPECT_FALSE(field.hasFocus());
    QTest::keyClick(&other, Qt::Key_Tab);
    EXPECT_TRUE(objects.empty());
}

TEST_F(PDETextField, PostsNothingWhenTheProgramSetsItsText) {
    field.setText(QStringLiteral("abc"));
    EXPECT_TRUE(objects.empty());
}

TEST_F(PDETextField, PostsForSelectTextAndLeavesTheSelectionAsItWas) {
    field.setText(QStringLiteral("abcd"));
    field.setSelection(1, 2);
    field.selectText();
    EXPECT_EQ(objects, std::vector<QObject*>{&field});
    EXPECT_EQ(field.selectedText(), QStringLiteral("bc"));
    field.deselect();
    field.selectText();
    EXPECT_FALSE(field.hasSelectedText());
}

TEST_F(PDETextField, PostsWhenTheFlagIsFalseOnly) {
    field.sendFirstResponderNotification(true);
    EXPECT_TRUE(objects.empty());
    field.sendFirstResponderNotification(false);
    EXPECT_EQ(objects.size(), 1u);
}

TEST_F(PDETextField, AnswersWhetherItCouldTakeTheFocus) {
    EXPECT_TRUE(field.becomeFirstResponder());
    EXPECT_TRUE(field.hasFocus());
    other.setFocus();
    field.setEnabled(false);
    EXPECT_FALSE(field.becomeFirstResponder());
    EXPECT_TRUE(objects.empty());
}

TEST_F(PDETextField, GivesUpTheFocusWhenAnEditEnds) {
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_FALSE(field.hasFocus());
    EXPECT_TRUE(objects.empty());
}

TEST_F(PDETextField, PassesOnWhatAnObserverThrows) {
    NotificationCentre::defaultCentre().addObserver(
        &observer, QStringLiteral("TextFieldResignFirstResponderNotification"), {},
        [](const Notification&) { throw std::runtime_error("observer"); });
    EXPECT_THROW(field.textDidChange(), std::runtime_error);
    EXPECT_NO_THROW(field.textDidEndEditing());
}

TEST_F(PDETextField, KeepsTextChangesFromItsDelegate) {
    int told = 0;
    QObject delegate;
    setTextDelegate(&field, &delegate, [&](QLineEdit*) { ++told; });
    QTest::keyClicks(&field, QStringLiteral("ab"));
    EXPECT_EQ(told, 0);
    EXPECT_EQ(objects.size(), 2u);
}

TEST_F(PDETextField, LeavesThePlainFieldsDelegateItsChanges) {
    std::vector<QLineEdit*> told;
    {
        QObject delegate;
        setTextDelegate(&other, &delegate, [&](QLineEdit* f) { told.push_back(f); });
        QTest::keyClicks(&other, QStringLiteral("a"));
    }
    QTest::keyClicks(&other, QStringLiteral("b"));
    EXPECT_EQ(told, std::vector<QLineEdit*>{&other});
    EXPECT_TRUE(objects.empty());
    setTextDelegate(nullptr, &observer, [](QLineEdit*) {});
}

} // namespace
