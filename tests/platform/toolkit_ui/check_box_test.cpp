// Tests of the toolkit: checkboxes with integer states.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "platform/toolkit/check_box.h"

namespace labelcut::test {
namespace {

TEST(CheckBoxState, KeepsTheBareNumber) {
    CheckBox box;
    EXPECT_EQ(checkBoxState(box), 0);
    QSignalSpy clicked(&box, &QCheckBox::clicked);
    for (const int state : {1, 0, -1, 2, 1, -1, 98, 0, 2, -5}) {
        setCheckBoxState(box, state);
        EXPECT_EQ(checkBoxState(box), state);
        EXPECT_EQ(box.checkState() == Qt::PartiallyChecked, state != 0 && state != 1);
    }
    EXPECT_TRUE(clicked.isEmpty());
}

TEST(CheckBoxState, OfAMixedBoxThatNobodyNumberedIsMinusOne) {
    CheckBox box;
    box.setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(checkBoxState(box), -1);
    setCheckBoxState(box, 98);
    setCheckBoxState(box, 0);
    box.setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(checkBoxState(box), -1) << "the number of long ago is forgotten";
}

TEST(CheckBoxState, LeavesABoxOfTwoStatesBehind) {
    CheckBox box;
    setCheckBoxState(box, -1);
    setCheckBoxState(box, 1);
    EXPECT_FALSE(box.isTristate());
    setCheckBoxState(box, 2);
    setCheckBoxState(box, 0);
    EXPECT_FALSE(box.isTristate());
}

TEST(CheckBoxClick, TurnsOffOnAndEverythingElseOff) {
    for (const auto& [from, to] :
         {std::pair(0, 1), std::pair(1, 0), std::pair(-1, 0), std::pair(2, 0), std::pair(98, 0)}) {
        CheckBox box;
        setCheckBoxState(box, from);
        int atAction = -9;
        QObject::connect(&box, &QCheckBox::clicked, &box, [&] { atAction = checkBoxState(box); });
        box.click();
        EXPECT_EQ(checkBoxState(box), to) << from;
        EXPECT_EQ(atAction, to) << from;
        setCheckBoxState(box, from);
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Space);
        EXPECT_EQ(checkBoxState(box), to) << from;
    }
}

TEST(CheckBoxClick, DoesNothingWhileDisabled) {
    CheckBox box;
    box.setEnabled(false);
    box.click();
    EXPECT_EQ(checkBoxState(box), 0);
}

} // namespace
} // namespace labelcut::test
