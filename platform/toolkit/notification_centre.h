// Toolkit: the notification centre, by which parts of a plug-in announce things to whoever listens.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace labelcut {

/// What observers receive.
struct Notification {
    QString name;
    /// What the notification is about, often its sender as a QObject*; may be invalid.
    QVariant object;
};

/// Delivers notifications by name and object, synchronously, in the order of registration.
///
/// Main thread only. A registration whose observer is destroyed, or whose object is a QObject that
/// is destroyed, is forgotten. Observers may post, register and unregister while a notification is
/// being delivered: one that was registered during a delivery hears of the next one first, one that
/// was removed hears nothing more. What a handler throws passes through post(); the observers after
/// it are then not called.
class NotificationCentre {
public:
    using Handler = std::function<void(const Notification&)>;

    /// The centre that everything in this library instance shares.
    static NotificationCentre& defaultCentre();

    /// @param observer  the registration lives as long as this object; must not be null.
    /// @param name      exact name of the notification.
    /// @param object    only notifications about this object; an invalid variant means any.
    /// @param handler   called with every matching notification.
    void addObserver(QObject* observer, const QString& name, const QVariant& object,
                     Handler handler);
    /// Removes the observer's registrations with exactly this name and object.
    void removeObserver(const QObject* observer, const QString& name, const QVariant& object);
    /// Calls every matching handler before it returns.
    /// @param name    exact name of the notification.
    /// @param object  what it is about; invalid when it is about nothing, which reaches only the
    ///                observers of any object.
    void post(const QString& name, const QVariant& object);

    /// How many registrations are alive.
    int observerCount() const;

private:
    struct Registration {
        QPointer<QObject> observer;
        QString name;
        QVariant object;
        /// The object again when it is a QObject: an address alone could come to name another one.
        QPointer<QObject> guard;
        bool guarded = false;
        Handler handler;
        quint64 serial = 0;

        bool isAlive() const { return observer && (!guarded || guard); }
        bool wants(const QString& posted, const QVariant& about) const;
    };

    void forgetDead();

    /// In the order of their serials.
    std::vector<Registration> mRegistrations;
    quint64 mLastSerial = 0;
};

} // namespace labelcut
