// Toolkit: the notification centre, by which parts of a plug-in announce things to whoever listens.
#include "platform/toolkit/notification_centre.h"

#include <algorithm>
#include <utility>

namespace labelcut {

bool NotificationCentre::Registration::wants(const QString& posted, const QVariant& about) const {
    return isAlive() && name == posted && (!object.isValid() || object == about);
}

NotificationCentre& NotificationCentre::defaultCentre() {
    static NotificationCentre centre;
    return centre;
}

void NotificationCentre::forgetDead() {
    std::erase_if(mRegistrations, [](const Registration& r) { return !r.isAlive(); });
}

void NotificationCentre::addObserver(QObject* observer, const QString& name, const QVariant& object,
                                     Handler handler) {
    forgetDead();
    auto* const about = object.value<QObject*>();
    mRegistrations.push_back(
        {observer, name, object, about, about != nullptr, std::move(handler), ++mLastSerial});
}

void NotificationCentre::removeObserver(const QObject* observer, const QString& name,
                                        const QVariant& object) {
    std::erase_if(mRegistrations, [&](const Registration& r) {
        return r.observer == observer && r.name == name && r.object == object;
    });
}

void NotificationCentre::post(const QString& name, const QVariant& object) {
    forgetDead();
    const Notification notification{name, object};
    const quint64 newest = mLastSerial;
    quint64 delivered = 0;
    // A handler may change the list, so the next one is looked up anew by its serial.
    while (true) {
        const auto next = std::ranges::find_if(mRegistrations, [&](const Registration& r) {
            return r.serial > delivered && r.serial <= newest && r.wants(name, object);
        });
        if (next == mRegistrations.end())
            return;
        delivered = next->serial;
        const Handler handler = next->handler;
        handler(notification);
    }
}

int NotificationCentre::observerCount() const {
    return static_cast<int>(
        std::ranges::count_if(mRegistrations, [](const Registration& r) { return r.isAlive(); }));
}

} // namespace labelcut
