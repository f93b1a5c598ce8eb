// The dialog: one parameter of a custom value as a field.
#pragma once

#include <QObject>
#include <QString>

#include <optional>

#include "host/settings/ppd_calls.h"

class QLabel;
class QLineEdit;
class QWidget;

namespace labelcut {

/// Numbers and lengths stand in it as the user's country writes them. Until the user changes what
/// it shows, its value is the one that was given, however that is rounded for the eye.
class CustomField : public QObject {
    Q_OBJECT
public:
    /// @param option  title of the option that the parameter belongs to, for screen readers.
    /// @param page    parent of the two widgets, which are hidden until somebody shows them.
    /// @param parent  of this object.
    CustomField(ppd::CustomParameter parameter, const QString& option, QWidget& page,
                QObject* parent);

    QLabel& label() { return *mLabel; }
    QLineEdit& edit() { return *mEdit; }

    /// Shows a value, unless the user is typing one. @param value  as PPDs write it.
    void show(const QString& value);
    /// As PPDs write it; nothing while what is typed is none or lies outside the bounds.
    std::optional<QString> value() const;
    /// Whether nothing stands in it.
    bool isBlank() const;
    /// What it shows first: the smallest number; of a text nothing.
    void showFirst();
    /// For people: "6 mm to 100 mm", "2 to 5 characters".
    QString boundsText() const;

Q_SIGNALS:
    /// At each key.
    void typed();
    /// The user has left the field, or pressed Return.
    void edited();

private:
    std::optional<QString> read(const QString& text) const;

    ppd::CustomParameter mParameter;
    QLineEdit* mEdit;
    QLabel* mLabel;
    /// The value that was shown last, and as what.
    QString mShownValue;
    QString mShownText;
};

} // namespace labelcut
