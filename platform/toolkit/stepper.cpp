// Toolkit: the stepper of interface files, two small arrows that change a number.
#include "platform/toolkit/stepper.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace labelcut {

namespace {

/// One notch of a common wheel, in eighths of a degree (QWheelEvent's unit).
constexpr int kWheelNotch = 120;

int saturatingSum(int a, int b) {
    const std::int64_t sum = std::int64_t{a} + b;
    return static_cast<int>(std::clamp<std::int64_t>(sum, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

} // namespace

Stepper::Stepper(QWidget* parent)
    : QWidget(parent)
    , mUp(addArrow(Qt::UpArrow, 1))
    , mDown(addArrow(Qt::DownArrow, -1)) {}

QToolButton* Stepper::addArrow(Qt::ArrowType arrow, int step) {
    auto* button = new QToolButton(this);
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QToolButton::clicked, this, [this, step] { stepBy(step); });
    return button;
}

void Stepper::stepTo(int value) {
    setValue(value);
    Q_EMIT stepped();
}

void Stepper::stepBy(int step) {
    stepTo(saturatingSum(mValue, step));
}

void Stepper::setField(QLineEdit* field) {
    if (mField)
        mField->removeEventFilter(this);
    mField = field;
    if (field)
        field->installEventFilter(this);
}

void Stepper::setArrowNames(const QString& up, const QString& down) {
    mUp->setAccessibleName(up);
    mUp->setToolTip(up);
    mDown->setAccessibleName(down);
    mDown->setToolTip(down);
}

void Stepper::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int half = height() / 2;
    mUp->setGeometry(0, 0, width(), half);
    mDown->setGeometry(0, height() - half, width(), half);
}

void Stepper::wheelEvent(QWheelEvent* event) {
    if (!mField || !mField->hasFocus()) {
        event->ignore();
        return;
    }
    mWheel += event->angleDelta().y();
    for (; mWheel >= kWheelNotch; mWheel -= kWheelNotch)
        stepBy(1);
    for (; mWheel <= -kWheelNotch; mWheel += kWheelNotch)
        stepBy(-1);
    event->accept();
}

bool Stepper::eventFilter(QObject* watched, QEvent* event) {
    if (watched != mField || !isEnabled())
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::Wheel) {
        wheelEvent(static_cast<QWheelEvent*>(event));
        return event->isAccepted();
    }
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Up && key != Qt::Key_Down)
        return QWidget::eventFilter(watched, event);
    stepBy(key == Qt::Key_Up ? 1 : -1);
    return true;
}

} // namespace labelcut
