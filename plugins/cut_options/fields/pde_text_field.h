// Input fields: the text field that announces its edits.
#pragma once

#include <QLineEdit>

namespace labelcut {

/// Posted to the default notification centre with the field (QObject*) as object, on every change
/// of its text by the user and on every request to select its text; never for a change of focus.
inline constexpr char kTextFieldResignFirstResponderNotification[] =
    "TextFieldResignFirstResponderNotification";

class PDETextField13_v400_ : public QLineEdit {
    Q_OBJECT
    /// False: a field of this class keeps its text changes from its delegate.
    Q_PROPERTY(bool tellsDelegate READ tellsDelegate CONSTANT)
public:
    explicit PDETextField13_v400_(QWidget* parent = nullptr);

    bool tellsDelegate() const { return false; }

    /// @param flag  false posts the notification, true does nothing.
    void sendFirstResponderNotification(bool flag);

    /// Takes the keyboard focus. @return whether the field has it now.
    bool becomeFirstResponder();
    /// Gives up the keyboard focus, right after an edit has ended.
    void textDidEndEditing();
    /// Posts the notification and does nothing else.
    void textDidChange();
    /// Posts the notification and selects nothing.
    void selectText();

protected:
    void focusInEvent(QFocusEvent* event) override;
};

} // namespace labelcut
