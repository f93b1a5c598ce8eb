// The dialog: messages in lines where the cause is, never in boxes.
#include "host/dialog/message_bar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr char kTextName[] = "messageText";

QLabel* iconFor(const QWidget& widget, MessageBar::Kind kind) {
    auto* icon = new QLabel;
    const int extent = widget.style()->pixelMetric(QStyle::PM_SmallIconSize);
    const QStyle::StandardPixmap picture = kind == MessageBar::Kind::Warning
                                               ? QStyle::SP_MessageBoxWarning
                                               : QStyle::SP_MessageBoxInformation;
    icon->setPixmap(widget.style()->standardIcon(picture).pixmap(extent));
    return icon;
}

} // namespace

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent)
    , mLines(new QVBoxLayout(this)) {
    setFrameShape(QFrame::StyledPanel);
    mLines->setContentsMargins(8, 4, 8, 4);
    mLines->setSpacing(4);
    hide();
}

QWidget* MessageBar::line(const QString& name) const {
    return findChild<QWidget*>(name, Qt::FindDirectChildrenOnly);
}

void MessageBar::show(const QString& name, Kind kind, const QString& text,
                      const std::vector<MessageAction>& actions) {
    remove(name);
    auto* row = new QWidget(this);
    row->setObjectName(name);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(iconFor(*this, kind), 0, Qt::AlignTop);
    auto* label = new QLabel(text);
    label->setObjectName(QLatin1String(kTextName));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(label, 1);
    for (const MessageAction& action : actions) {
        auto* button = new QPushButton(action.text);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action.act);
        layout->addWidget(button);
    }
    auto* close = new QToolButton;
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setAccessibleName(hostText("DismissMessage"));
    close->setToolTip(hostText("DismissMessage"));
    connect(close, &QToolButton::clicked, this, [this, name] { remove(name); });
    layout->addWidget(close, 0, Qt::AlignTop);
    mLines->addWidget(row);
    QFrame::show();

    QAccessibleEvent alert(label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MessageBar::remove(const QString& name) {
    QWidget* row = line(name);
    if (!row)
        return;
    mLines->removeWidget(row);
    row->setObjectName(QString());
    row->hide();
    row->deleteLater();
    setVisible(mLines->count() > 0);
}

QStringList MessageBar::texts() const {
    QStringList all;
    for (int i = 0; i < mLines->count(); ++i) {
        const auto* label =
            mLines->itemAt(i)->widget()->findChild<QLabel*>(QLatin1String(kTextName));
        all.append(label->text());
    }
    return all;
}

} // namespace labelcut
