// Strip: what screen readers are told: a list of labels, each with the cut after it.
#pragma once

#include <QAccessibleWidget>

#include <deque>
#include <unordered_map>

namespace labelcut {

class StripView;

/// The list. Its items are made when they are asked for, and the oldest of those out of sight are
/// dropped when there are many.
class AccessibleStrip : public QAccessibleWidget {
public:
    /// So many items are kept.
    static constexpr std::size_t kMostItems = 512;

    explicit AccessibleStrip(StripView& strip);
    ~AccessibleStrip() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;

private:
    StripView& strip() const;
    bool isInUse(int index) const;
    void dropOldest() const;

    mutable std::unordered_map<int, QAccessible::Id> mItems;
    /// Their indices, the one made first in front.
    mutable std::deque<int> mAges;
};

/// One label of it.
class AccessibleLabel : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    /// @param index  of the label, counted from 0; it may be gone by the time of a question.
    AccessibleLabel(StripView& strip, int index);

    int index() const { return mIndex; }
    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    StripView& mStrip;
    int mIndex;
};

} // namespace labelcut
