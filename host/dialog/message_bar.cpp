// The dialog: messages in lines where the cause is, never in boxes.
#include "host/dialog/message_bar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <map>
#include <utility>

#include "host/dialog/alert.h"
#include "host/dialog/line_icons.h"
#include "host/dialog/plain_label.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

QLabel* iconFor(const QWidget& widget, MessageBar::Kind kind) {
    auto* icon = new QLabel;
    const int extent = widget.style()->pixelMetric(QStyle::PM_SmallIconSize);
    const QStyle::StandardPixmap picture = kind == MessageBar::Kind::Warning
                                               ? QStyle::SP_MessageBoxWarning
                                               : QStyle::SP_MessageBoxInformation;
    icon->setPixmap(widget.style()->standardIcon(picture).pixmap(extent));
    return icon;
}

QString shortened(const QStringList& sentences) {
    if (sentences.size() <= MessageBar::kMaxSentences)
        return sentences.join(u'\n');
    const QStringList shown = sentences.first(MessageBar::kMaxSentences - 1);
    const auto more = static_cast<int>(sentences.size() - shown.size());
    return shown.join(u'\n') + u'\n' + hostText("AndMore").arg(more);
}

} // namespace

/// One message.
class MessageBar::Row : public Alert {
public:
    Row(const QString& name, const QStringList& sentences)
        : mSentences(sentences) {
        setObjectName(name);
    }

    const QStringList& sentences() const { return mSentences; }

    /// The buttons by their texts, and where they stand; whoever fills the row sets the latter.
    std::map<QString, QPushButton*> offers;
    /// Their texts in the order in which they stand.
    QStringList offered;
    QHBoxLayout* offerLine = nullptr;
    QToolButton* close = nullptr;

private:
    QStringList mSentences;
};

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent)
    , mRows(new QVBoxLayout(this)) {
    setFrameShape(QFrame::StyledPanel);
    mRows->setContentsMargins(8, 4, 8, 4);
    mRows->setSpacing(4);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
        if (old && now && isAncestorOf(now) && !isAncestorOf(old))
            mFocusBefore = old;
    });
}

MessageBar::Row* MessageBar::row(const QString& name) const {
    return dynamic_cast<Row*>(findChild<QWidget*>(name, Qt::FindDirectChildrenOnly));
}

void MessageBar::show(const QString& name, Kind kind, const QString& text,
                      const std::vector<MessageAction>& actions) {
    const QStringList sentences = text.split(u'\n');
    if (Row* shown = row(name); shown && shown->sentences() == sentences) {
        offer(*shown, actions);
        return;
    }
    // What failed is said once, by whoever says it last.
    for (const Row* other : rows()) {
        if (other->objectName() == name || other->sentences() == sentences)
            remove(other->objectName());
    }

    auto* row = new Row(name, sentences);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(iconFor(*this, kind));
    QLabel* label = plainLabel(shortened(sentences));
    label->setWordWrap(true);
    // A long word, such as a path, must not widen the window.
    label->setMinimumWidth(1);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (label->text() != text)
        label->setToolTip(Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal));
    layout->addWidget(label, 1);
    row->offerLine = new QHBoxLayout;
    layout->addLayout(row->offerLine);
    auto* close = row->close = new QToolButton;
    close->setAutoRaise(true);
    close->setFocusPolicy(Qt::StrongFocus);
    close->setIcon(lineIcon(LineIcon::Dismiss));
    close->setAccessibleName(hostText("DismissMessage"));
    close->setToolTip(hostText("DismissMessage"));
    connect(close, &QToolButton::clicked, this, [this, name] { remove(name); });
    layout->addWidget(close);
    offer(*row, actions);
    mRows->addWidget(row);
    QFrame::show();
    row->announce(sentences.join(u' '));
}

void MessageBar::offer(Row& row, const std::vector<MessageAction>& actions) {
    QStringList texts;
    for (const MessageAction& action : actions)
        texts << action.text;
    // Whatever is put into a layout anew has the window laid out anew.
    if (std::exchange(row.offered, texts) == texts)
        return;
    std::map<QString, QPushButton*> before = std::exchange(row.offers, {});
    int place = 0;
    QWidget* last = row.close;
    for (const MessageAction& action : actions) {
        QPushButton*& button = row.offers[action.text];
        if (const auto old = before.extract(action.text)) {
            button = old.mapped();
        } else {
            button = new QPushButton(QString(action.text).replace(u'&', QStringLiteral("&&")));
            connect(button, &QPushButton::clicked, this, action.act);
        }
        row.offerLine->insertWidget(place++, button);
        // The Tab key goes through them where the row stands; in the end the cross is the last.
        setTabOrder(last, button);
        last = button;
    }
    setTabOrder(last, row.close);
    for (const auto& [text, gone] : before) {
        if (gone->hasFocus())
            giveFocusBack();
        row.offerLine->removeWidget(gone);
        gone->hide();
        gone->deleteLater();
    }
}

void MessageBar::add(const QString& name, const QString& sentence) {
    const Row* shown = row(name);
    QStringList sentences = shown ? shown->sentences() : QStringList();
    sentences.removeAll(sentence);
    sentences.append(sentence);
    show(name, Kind::Information, sentences.join(u'\n'));
}

void MessageBar::remove(const QString& name) {
    Row* gone = row(name);
    if (!gone)
        return;
    if (gone->isAncestorOf(QApplication::focusWidget()))
        giveFocusBack();
    mRows->removeWidget(gone);
    gone->setObjectName(QString());
    gone->hide();
    gone->deleteLater();
    setVisible(mRows->count() > 0);
}

void MessageBar::giveFocusBack() {
    if (mFocusBefore && mFocusBefore->isVisible() && mFocusBefore->isEnabled())
        mFocusBefore->setFocus(Qt::OtherFocusReason);
}

std::vector<MessageBar::Row*> MessageBar::rows() const {
    std::vector<Row*> all;
    all.reserve(static_cast<std::size_t>(mRows->count()));
    for (int i = 0; i < mRows->count(); ++i)
        all.push_back(static_cast<Row*>(mRows->itemAt(i)->widget()));
    return all;
}

QStringList MessageBar::texts() const {
    QStringList all;
    for (const Row* row : rows())
        all.append(row->sentences().join(u'\n'));
    return all;
}

} // namespace labelcut
