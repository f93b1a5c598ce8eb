// The dialog: the wheel scrolls; it changes a field only while the field has the focus.
#pragma once

#include <QObject>

class QWidget;

namespace labelcut {

/// Keeps the wheel away from fields that do not have the focus.
class WheelGuard : public QObject {
public:
    using QObject::QObject;
    /// Guards every combo box and number field in the tree, as it is now.
    void watch(QWidget& root);
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace labelcut
