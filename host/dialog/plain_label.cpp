// The dialog: labels for texts that come from elsewhere.
#include "host/dialog/plain_label.h"

#include <QApplication>
#include <QLabel>

namespace labelcut {

namespace {
/// So many letters of a field's name stand on one line.
constexpr int kLineLetters = 30;
} // namespace

QLabel* plainLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    const Qt::Alignment side = QApplication::isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    label->setAlignment(side | Qt::AlignAbsolute | Qt::AlignVCenter);
    return label;
}

QLabel* fieldLabel(const QString& name, QWidget& field) {
    // Beside a field, "&" would announce a key.
    auto* label = new QLabel(QString(name).replace(u'&', QStringLiteral("&&")));
    label->setTextFormat(Qt::PlainText);
    const QFontMetrics metrics = label->fontMetrics();
    label->setWordWrap(metrics.horizontalAdvance(name) > kLineLetters * metrics.averageCharWidth());
    label->setBuddy(&field);
    return label;
}

} // namespace labelcut
