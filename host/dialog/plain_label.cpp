// The dialog: labels for texts that come from elsewhere.
#include "host/dialog/plain_label.h"

#include <QApplication>
#include <QLabel>

namespace labelcut {

QLabel* plainLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    const Qt::Alignment side = QApplication::isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    label->setAlignment(side | Qt::AlignAbsolute | Qt::AlignVCenter);
    return label;
}

} // namespace labelcut
