// The dialog: a sentence that appears and that a screen reader speaks.
#include "host/dialog/alert.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace labelcut {

namespace {

QAccessibleInterface* accessibleAlert(const QString&, QObject* object) {
    auto* alert = dynamic_cast<Alert*>(object);
    return alert ? new QAccessibleWidget(alert, QAccessible::AlertMessage) : nullptr;
}

} // namespace

Alert::Alert(QWidget* parent)
    : QWidget(parent) {
    static const bool installed = [] {
        QAccessible::installFactory(accessibleAlert);
        return true;
    }();
    static_cast<void>(installed);
}

void Alert::announce(const QString& sentence) {
    setAccessibleName(sentence);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace labelcut
