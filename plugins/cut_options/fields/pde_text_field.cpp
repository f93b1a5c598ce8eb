// Input fields: the text field that announces its edits.
#include "plugins/cut_options/fields/pde_text_field.h"

#include "platform/toolkit/notification_centre.h"

namespace labelcut {

PDETextField13_v400_::PDETextField13_v400_(QWidget* parent)
    : QLineEdit(parent) {
    connect(this, &QLineEdit::textEdited, this, [this] { textDidChange(); });
    connect(this, &QLineEdit::editingFinished, this, [this] { textDidEndEditing(); });
}

void PDETextField13_v400_::sendFirstResponderNotification(bool flag) {
    if (flag)
        return;
    NotificationCentre::defaultCentre().post(
        QLatin1String(kTextFieldResignFirstResponderNotification),
        QVariant::fromValue<QObject*>(this));
}

bool PDETextField13_v400_::becomeFirstResponder() {
    setFocus();
    return hasFocus();
}

void PDETextField13_v400_::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    sendFirstResponderNotification(true);
}

void PDETextField13_v400_::textDidEndEditing() {
    // Without the focus there is nothing to give up; a window in the background keeps its field.
    if (hasFocus())
        clearFocus();
    if (!hasFocus())
        sendFirstResponderNotification(true);
}

void PDETextField13_v400_::textDidChange() {
    sendFirstResponderNotification(false);
}

void PDETextField13_v400_::selectText() {
    sendFirstResponderNotification(false);
}

} // namespace labelcut
