// Toolkit: the checkbox of interface files, with the integer states that panels work in.
#pragma once

#include <QCheckBox>

namespace labelcut {

/// A checkbox whose state is an integer: 0 off, 1 on, anything else mixed. A click turns 0 into 1
/// and everything else into 0; a bare number above 1 or below 0 is kept as it was set.
class CheckBox : public QCheckBox {
    Q_OBJECT
public:
    using QCheckBox::QCheckBox;

protected:
    void nextCheckState() override;
};

/// The integer state of any checkbox; a mixed state that was not set through setCheckBoxState()
/// is -1.
int checkBoxState(const QCheckBox& box);
/// Sets the integer state without sending the box's action.
void setCheckBoxState(QCheckBox& box, int state);

} // namespace labelcut
