// Toolkit: the checkbox of interface files, with the integer states that panels work in.
#include "platform/toolkit/check_box.h"

#include <QVariant>

namespace labelcut {

namespace {
constexpr char kBareState[] = "labelcutState";
constexpr int kMixed = -1;
} // namespace

void CheckBox::nextCheckState() {
    setCheckBoxState(*this, checkBoxState(*this) == 0 ? 1 : 0);
}

int checkBoxState(const QCheckBox& box) {
    if (box.checkState() != Qt::PartiallyChecked)
        return box.checkState() == Qt::Checked ? 1 : 0;
    const QVariant bare = box.property(kBareState);
    return bare.isValid() ? bare.toInt() : kMixed;
}

void setCheckBoxState(QCheckBox& box, int state) {
    const bool mixed = state != 0 && state != 1;
    // Only a mixed box has a bare number to forget.
    if (mixed || box.checkState() == Qt::PartiallyChecked)
        box.setProperty(kBareState, mixed ? QVariant(state) : QVariant());
    if (mixed) {
        box.setCheckState(Qt::PartiallyChecked);
        return;
    }
    box.setCheckState(state == 1 ? Qt::Checked : Qt::Unchecked);
    box.setTristate(false);
}

} // namespace labelcut
