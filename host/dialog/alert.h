// The dialog: a sentence that appears and that a screen reader speaks.
#pragma once

#include <QWidget>

namespace labelcut {

/// Its role is that of an alert; its name is what is said. What it shows is put into it by whoever
/// makes it.
class Alert : public QWidget {
public:
    explicit Alert(QWidget* parent = nullptr);
    /// Has a screen reader speak the sentence; call it when the sentence has come into sight.
    void announce(const QString& sentence);
};

} // namespace labelcut
