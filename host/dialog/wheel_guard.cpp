// The dialog: the wheel scrolls; it changes a field only while the field has the focus.
#include "host/dialog/wheel_guard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QWidget>

namespace labelcut {

void WheelGuard::watch(QWidget& root) {
    const auto guard = [this](QWidget* field) {
        field->setFocusPolicy(Qt::StrongFocus);
        field->removeEventFilter(this);
        field->installEventFilter(this);
    };
    for (QComboBox* box : root.findChildren<QComboBox*>())
        guard(box);
    for (QAbstractSpinBox* box : root.findChildren<QAbstractSpinBox*>())
        guard(box);
}

bool WheelGuard::eventFilter(QObject* watched, QEvent* event) {
    const auto* field = qobject_cast<QWidget*>(watched);
    if (event->type() != QEvent::Wheel || !field || field->hasFocus())
        return QObject::eventFilter(watched, event);
    // Refused here, the wheel reaches what lies around the field and scrolls it.
    event->ignore();
    return true;
}

} // namespace labelcut
