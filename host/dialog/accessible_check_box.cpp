// The dialog: checkboxes as assistive programs see them.
#include "host/dialog/accessible_check_box.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCheckBox>

namespace labelcut {

namespace {

class AccessibleCheckBox : public QAccessibleWidget {
public:
    explicit AccessibleCheckBox(QCheckBox& box)
        : QAccessibleWidget(&box, QAccessible::CheckBox)
        , mBox(box) {}

    QString text(QAccessible::Text kind) const override {
        const QString own = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && own.isEmpty() ? mBox.text().remove(u'&') : own;
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = mBox.checkState() == Qt::Checked;
        state.checkStateMixed = mBox.checkState() == Qt::PartiallyChecked;
        return state;
    }
    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (mBox.isEnabled())
            names.prepend(toggleAction());
        return names;
    }
    void doAction(const QString& action) override {
        if (action == toggleAction())
            mBox.click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    QCheckBox& mBox;
};

QAccessibleInterface* create(const QString&, QObject* object) {
    auto* box = qobject_cast<QCheckBox*>(object);
    return box ? new AccessibleCheckBox(*box) : nullptr;
}

} // namespace

void makeAccessibleTogglesClicks() {
    QAccessible::removeFactory(&create);
    QAccessible::installFactory(&create);
}

} // namespace labelcut
