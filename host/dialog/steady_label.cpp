// The dialog: a text that changes with every click without the window being laid out anew.
#include "host/dialog/steady_label.h"

#include <QLabel>

#include <utility>

#include "host/dialog/plain_label.h"

namespace labelcut {

SteadyLabel::SteadyLabel(const QString& name, QWidget* parent)
    : QWidget(parent)
    , mLabel(plainLabel()) {
    mLabel->setObjectName(name);
    mLabel->setWordWrap(true);
    // In no layout: what the label asks for goes no further than here.
    mLabel->setParent(this);
    QSizePolicy policy = mLabel->sizePolicy();
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void SteadyLabel::setText(const QString& text) {
    if (text == mLabel->text())
        return;
    mLabel->setText(text);
    const int needed = heightForWidth(width());
    if (std::exchange(mNeededHeight, needed) != needed || !isVisible())
        updateGeometry();
}

QString SteadyLabel::text() const {
    return mLabel->text();
}

int SteadyLabel::heightForWidth(int width) const {
    return mLabel->heightForWidth(width);
}

QSize SteadyLabel::sizeHint() const {
    return mLabel->sizeHint();
}

QSize SteadyLabel::minimumSizeHint() const {
    return mLabel->minimumSizeHint();
}

void SteadyLabel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    mLabel->resize(size());
    mNeededHeight = heightForWidth(width());
}

} // namespace labelcut
