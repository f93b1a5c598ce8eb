// Tests of the toolkit: the stepper, its arrows, its field's keys and the wheel.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <limits>

#include "platform/toolkit/stepper.h"

namespace labelcut::test {
namespace {

/// A window with a field and its stepper.
struct Stand {
    Stand() {
        field.setGeometry(0, 0, 50, 26);
        other.setGeometry(0, 40, 50, 26);
        stepper.setGeometry(52, 0, 20, 29);
        stepper.setField(&field);
        window.show();
        QApplication::setActiveWindow(&window);
        field.setFocus();
    }
    ~Stand() { QApplication::setActiveWindow(nullptr); }

    bool turnWheel(QWidget& target, int angle) {
        QWheelEvent event(QPointF(1, 1), target.mapToGlobal(QPointF(1, 1)), QPoint(),
                          QPoint(0, angle), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        event.setAccepted(false);
        QApplication::sendEvent(&target, &event);
        return event.isAccepted();
    }
    QToolButton& arrow(Qt::ArrowType type) {
        for (auto* button : stepper.findChildren<QToolButton*>()) {
            if (button->arrowType() == type)
                return *button;
        }
        throw std::runtime_error("no such arrow");
    }

    QWidget window;
    QLineEdit field{&window};
    QLineEdit other{&window};
    Stepper stepper{&window};
    QSignalSpy stepped{&stepper, &Stepper::stepped};
};

TEST(StepperArrows, StepByOneAndSendTheAction) {
    Stand stand;
    stand.stepper.setValue(5);
    EXPECT_TRUE(stand.stepped.isEmpty());
    QTest::mouseClick(&stand.arrow(Qt::UpArrow), Qt::LeftButton);
    EXPECT_EQ(stand.stepper.value(), 6);
    QTest::mouseClick(&stand.arrow(Qt::DownArrow), Qt::LeftButton);
    QTest::mouseClick(&stand.arrow(Qt::DownArrow), Qt::LeftButton);
    EXPECT_EQ(stand.stepper.value(), 4);
    EXPECT_EQ(stand.stepped.size(), 3);
    EXPECT_TRUE(stand.field.hasFocus());
}

TEST(StepperArrows, StandOneAboveTheOtherAndFillIt) {
    Stand stand;
    EXPECT_EQ(stand.arrow(Qt::UpArrow).geometry(), QRect(0, 0, 20, 14));
    EXPECT_EQ(stand.arrow(Qt::DownArrow).geometry(), QRect(0, 15, 20, 14));
    EXPECT_EQ(stand.arrow(Qt::UpArrow).focusPolicy(), Qt::NoFocus);
    EXPECT_TRUE(stand.arrow(Qt::UpArrow).autoRepeat());
}

TEST(StepperArrows, HaveNames) {
    Stand stand;
    stand.stepper.setArrowNames(QStringLiteral("More"), QStringLiteral("Fewer"));
    EXPECT_EQ(stand.arrow(Qt::UpArrow).accessibleName(), QStringLiteral("More"));
    EXPECT_EQ(stand.arrow(Qt::DownArrow).accessibleName(), QStringLiteral("Fewer"));
    EXPECT_EQ(stand.arrow(Qt::UpArrow).toolTip(), QStringLiteral("More"));
    EXPECT_EQ(stand.arrow(Qt::DownArrow).toolTip(), QStringLiteral("Fewer"));
}

TEST(StepperValues, SaturateAtTheEnds) {
    Stand stand;
    stand.stepper.setValue(std::numeric_limits<int>::max());
    QTest::mouseClick(&stand.arrow(Qt::UpArrow), Qt::LeftButton);
    EXPECT_EQ(stand.stepper.value(), std::numeric_limits<int>::max());
    stand.stepper.setValue(std::numeric_limits<int>::min());
    QTest::mouseClick(&stand.arrow(Qt::DownArrow), Qt::LeftButton);
    EXPECT_EQ(stand.stepper.value(), std::numeric_limits<int>::min());
    EXPECT_EQ(stand.stepped.size(), 2);
}

TEST(StepTo, SetsTheValueThenSends) {
    Stand stand;
    int seen = 0;
    QObject::connect(&stand.stepper, &Stepper::stepped, &stand.stepper,
                     [&] { seen = stand.stepper.value(); });
    EXPECT_TRUE(QMetaObject::invokeMethod(&stand.stepper, "stepTo", Q_ARG(int, 9)));
    EXPECT_EQ(seen, 9);
    EXPECT_EQ(stand.stepper.property("value").toInt(), 9);
}

TEST(FieldKeys, UpAndDownStep) {
    Stand stand;
    stand.field.setText(QStringLiteral("5"));
    stand.stepper.setValue(5);
    QTest::keyClick(&stand.field, Qt::Key_Up);
    EXPECT_EQ(stand.stepper.value(), 6);
    QTest::keyClick(&stand.field, Qt::Key_Down);
    QTest::keyClick(&stand.field, Qt::Key_Down);
    EXPECT_EQ(stand.stepper.value(), 4);
    EXPECT_EQ(stand.stepped.size(), 3);
    QTest::keyClick(&stand.field, Qt::Key_7);
    EXPECT_EQ(stand.field.text(), QStringLiteral("57"));
    QTest::keyClick(&stand.field, Qt::Key_Left);
    EXPECT_EQ(stand.stepper.value(), 4);
}

TEST(FieldKeys, DoNothingWhileTheStepperIsDisabled) {
    Stand stand;
    stand.stepper.setEnabled(false);
    QTest::keyClick(&stand.field, Qt::Key_Up);
    EXPECT_EQ(stand.stepper.value(), 0);
    EXPECT_TRUE(stand.stepped.isEmpty());
}

TEST(FieldKeys, OfAFormerFieldOrNoFieldDoNothing) {
    Stand stand;
    stand.stepper.setField(&stand.other);
    QTest::keyClick(&stand.field, Qt::Key_Up);
    EXPECT_EQ(stand.stepper.value(), 0);
    QTest::keyClick(&stand.other, Qt::Key_Up);
    EXPECT_EQ(stand.stepper.value(), 1);
    stand.stepper.setField(nullptr);
    QTest::keyClick(&stand.other, Qt::Key_Up);
    EXPECT_EQ(stand.stepper.value(), 1);
}

TEST(FieldKeys, EndWithTheField) {
    Stepper stepper;
    auto field = std::make_unique<QLineEdit>();
    stepper.setField(field.get());
    field->show();
    field.reset();
    QLineEdit other;
    stepper.setField(&other);
    QTest::keyClick(&other, Qt::Key_Up);
    EXPECT_EQ(stepper.value(), 1);
}

TEST(Wheel, StepsOnlyWhileTheFieldHasTheFocus) {
    Stand stand;
    for (QWidget* target :
         {static_cast<QWidget*>(&stand.field), static_cast<QWidget*>(&stand.stepper)}) {
        stand.field.setFocus();
        stand.stepper.setValue(5);
        EXPECT_TRUE(stand.turnWheel(*target, 120));
        EXPECT_EQ(stand.stepper.value(), 6);
        EXPECT_TRUE(stand.turnWheel(*target, -240));
        EXPECT_EQ(stand.stepper.value(), 4);
        stand.other.setFocus();
        EXPECT_FALSE(stand.turnWheel(*target, 120));
        EXPECT_EQ(stand.stepper.value(), 4);
    }
    EXPECT_EQ(stand.stepped.size(), 6);
}

TEST(Wheel, CollectsPartsOfANotch) {
    Stand stand;
    for (int i = 0; i < 7; ++i)
        stand.turnWheel(stand.stepper, 15);
    EXPECT_EQ(stand.stepper.value(), 0);
    stand.turnWheel(stand.stepper, 15);
    EXPECT_EQ(stand.stepper.value(), 1);
    stand.turnWheel(stand.stepper, -119);
    EXPECT_EQ(stand.stepper.value(), 1);
    stand.turnWheel(stand.stepper, -1);
    EXPECT_EQ(stand.stepper.value(), 0);
}

TEST(Wheel, DoesNothingWithoutAField) {
    Stand stand;
    stand.stepper.setField(nullptr);
    EXPECT_FALSE(stand.turnWheel(stand.stepper, 120));
    EXPECT_EQ(stand.stepper.value(), 0);
}

} // namespace
} // namespace labelcut::test
