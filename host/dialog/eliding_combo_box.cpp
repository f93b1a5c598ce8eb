// The dialog: a pop-up for texts of any length.
#include "host/dialog/eliding_combo_box.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QScreen>
#include <QStyle>
#include <QStylePainter>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace labelcut {

namespace {

/// So many letters are always in sight.
constexpr int kLeastLetters = 6;
/// What styles leave free beside a text within its field.
constexpr int kTextMargin = 2;

} // namespace

ElidingComboBox::ElidingComboBox(QWidget* parent)
    : QComboBox(parent) {
    // Not AdjustToContents: a timer would take all the width that is wanted, past the layout.
    setSizeAdjustPolicy(QComboBox::AdjustToContentsOnFirstShow);
}

QSize ElidingComboBox::minimumSizeHint() const {
    const QSize whole = QComboBox::minimumSizeHint();
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QSize letters(kLeastLetters * fontMetrics().averageCharWidth(), whole.height());
    const QSize least = style()->sizeFromContents(QStyle::CT_ComboBox, &option, letters, this);
    return {std::min(whole.width(), least.width()), whole.height()};
}

int ElidingComboBox::widthForText() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const bool hasIcon = !itemIcon(currentIndex()).isNull();
    return field.width() - 2 * kTextMargin - (hasIcon ? iconSize().width() + 2 * kTextMargin : 0);
}

QString ElidingComboBox::elidedText() const {
    return fontMetrics().elidedText(currentText(), Qt::ElideRight, widthForText());
}

void ElidingComboBox::paintEvent(QPaintEvent* event) {
    if (currentIndex() < 0) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = elidedText();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

bool ElidingComboBox::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || elidedText() == currentText())
        return QComboBox::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       Qt::convertFromPlainText(currentText(), Qt::WhiteSpaceNormal), this);
    return true;
}

void ElidingComboBox::showPopup() {
    mPickedFromList = true;
    const int entries = view()->sizeHintForColumn(modelColumn()) + 2 * view()->frameWidth() +
                        style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    view()->setMinimumWidth(std::min(entries, screen()->availableGeometry().width()));
    QComboBox::showPopup();
}

void ElidingComboBox::keyPressEvent(QKeyEvent* event) {
    mPickedFromList = false; // unless the key opens the list
    QComboBox::keyPressEvent(event);
}

void ElidingComboBox::wheelEvent(QWheelEvent* event) {
    mPickedFromList = false;
    QComboBox::wheelEvent(event);
}

} // namespace labelcut
