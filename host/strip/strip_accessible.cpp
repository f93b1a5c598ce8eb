// Strip: what screen readers are told.
#include "host/strip/strip_accessible.h"

#include <algorithm>
#include <limits>

#include "host/strip/strip_view.h"
#include "host/strip/strip_words.h"

namespace labelcut {

namespace {

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* strip = qobject_cast<StripView*>(object);
    return strip ? new AccessibleStrip(*strip) : nullptr;
}

} // namespace

void makeStripAccessible() {
    static const bool isDone = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(isDone);
}

AccessibleStrip::AccessibleStrip(StripView& strip)
    : QAccessibleWidget(&strip, QAccessible::List) {}

AccessibleStrip::~AccessibleStrip() {
    for (const auto& [index, id] : mItems)
        QAccessible::deleteAccessibleInterface(id);
}

StripView& AccessibleStrip::strip() const {
    return *static_cast<StripView*>(widget());
}

int AccessibleStrip::childCount() const {
    const auto& plan = strip().plan();
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    return plan && strip().isRead() ? static_cast<int>(std::min(plan->labels(), kMost)) : 0;
}

QAccessibleInterface* AccessibleStrip::child(int index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto found = mItems.find(index);
    if (found != mItems.end())
        return QAccessible::accessibleInterface(found->second);
    if (mItems.size() >= kMostItems)
        dropOldest();
    auto* item = new AccessibleLabel(strip(), index);
    mItems[index] = QAccessible::registerAccessibleInterface(item);
    mAges.push_back(index);
    return item;
}

bool AccessibleStrip::isInUse(int index) const {
    return index == strip().current() || !strip().rectOf(index).isNull();
}

/// Of those in sight screen readers may still hold what they asked for before.
void AccessibleStrip::dropOldest() const {
    for (std::size_t tries = mAges.size(); tries > 0; --tries) {
        const int index = mAges.front();
        mAges.pop_front();
        if (!isInUse(index)) {
            QAccessible::deleteAccessibleInterface(mItems.at(index));
            mItems.erase(index);
            return;
        }
        mAges.push_back(index);
    }
}

int AccessibleStrip::indexOfChild(const QAccessibleInterface* child) const {
    const auto* label = dynamic_cast<const AccessibleLabel*>(child);
    return label ? label->index() : -1;
}

QAccessibleInterface* AccessibleStrip::childAt(int x, int y) const {
    const auto label = strip().labelAt(strip().mapFromGlobal(QPoint(x, y)));
    return label ? child(static_cast<int>(*label)) : nullptr;
}

QAccessibleInterface* AccessibleStrip::focusChild() const {
    return strip().hasFocus() ? child(static_cast<int>(strip().current())) : nullptr;
}

QString AccessibleStrip::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Description && childCount() > 0)
        return figuresText(*strip().plan());
    return QAccessibleWidget::text(kind);
}

AccessibleLabel::AccessibleLabel(StripView& strip, int index)
    : mStrip(strip)
    , mIndex(index) {}

bool AccessibleLabel::isValid() const {
    return mStrip.plan() && mStrip.isRead() && mIndex < mStrip.plan()->labels();
}

QAccessibleInterface* AccessibleLabel::parent() const {
    return QAccessible::queryAccessibleInterface(&mStrip);
}

QString AccessibleLabel::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name && isValid() ? labelText(*mStrip.plan(), mIndex) : QString();
}

QRect AccessibleLabel::rect() const {
    const QRect rect = mStrip.rectOf(mIndex);
    return rect.isNull() ? rect : QRect(mStrip.mapToGlobal(rect.topLeft()), rect.size());
}

QAccessible::State AccessibleLabel::state() const {
    QAccessible::State state;
    state.focusable = true;
    state.selectable = true;
    state.focused = mStrip.hasFocus() && mStrip.current() == mIndex;
    state.selected = mStrip.current() == mIndex;
    state.offscreen = mStrip.rectOf(mIndex).isNull();
    state.invalid = !isValid();
    return state;
}

void* AccessibleLabel::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList AccessibleLabel::actionNames() const {
    return {pressAction(), setFocusAction()};
}

void AccessibleLabel::doAction(const QString& name) {
    if (!isValid())
        return;
    if (name == setFocusAction()) {
        mStrip.setCurrent(mIndex);
        mStrip.setFocus();
    } else if (name == pressAction()) {
        Q_EMIT mStrip.labelWanted(mIndex);
    }
}

} // namespace labelcut
