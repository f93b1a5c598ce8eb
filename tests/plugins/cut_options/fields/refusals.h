// Test support: hears what a formatter does when it refuses an edit.
#pragma once

#include "platform/toolkit/notification_centre.h"
#include "plugins/cut_options/fields/pde_formatter.h"
#include "plugins/cut_options/fields/system_beep.h"

#include <QObject>
#include <QStringList>

namespace labelcut::test {

/// While one lives, beeps are silent, and beeps and refusal notifications are kept in order.
class Refusals : public QObject {
public:
    Refusals() {
        mBefore = setSystemBeep([this] { events += QStringLiteral("beep"); });
        for (const char* name : {kInvalidCharacterNotification, kFormatErrorNotification}) {
            NotificationCentre::defaultCentre().addObserver(this, QLatin1String(name), {},
                                                            [this](const Notification& n) {
                                                                events += n.name;
                                                                object = n.object;
                                                            });
        }
    }
    ~Refusals() override { setSystemBeep(mBefore); }

    /// What one refusal of that kind leaves in events.
    static QStringList one(const char* name) {
        return {QStringLiteral("beep"), QLatin1String(name)};
    }
    static QStringList invalidCharacter() { return one(kInvalidCharacterNotification); }
    static QStringList formatError() { return one(kFormatErrorNotification); }

    QStringList take() { return std::exchange(events, {}); }

    QStringList events;
    QVariant object; ///< of the latest notification

private:
    Beep mBefore;
};

/// Types or pastes `inserted` over `selection` of `text`, as a field would propose it.
inline bool insertInto(Formatter& formatter, const QString& text, TextRange selection,
                       const QString& inserted) {
    QString proposed = text;
    proposed.replace(static_cast<qsizetype>(selection.location),
                     static_cast<qsizetype>(selection.length), inserted);
    TextRange caret{selection.location + static_cast<std::size_t>(inserted.size()), 0};
    return formatter.isPartialStringValid(&proposed, &caret, text, selection, nullptr);
}

/// The same at the end of the text.
inline bool append(Formatter& formatter, const QString& text, const QString& inserted) {
    return insertInto(formatter, text, {static_cast<std::size_t>(text.size()), 0}, inserted);
}

} // namespace labelcut::test
