// The dialog: what the window asks of each of its pages.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <utility>

#include "host/dialog/job_snapshot.h"

namespace labelcut {

/// A value that was typed and cannot be taken.
struct PageProblem {
    /// For the user; empty: there is no problem.
    QString sentence;
    /// Where it stands, or what is around it; null: nowhere in particular.
    QPointer<QWidget> field;
};

/// One page of the dialog. A page is a widget that its parent owns; it shows the model's state when
/// it is made.
class Page {
public:
    virtual ~Page() = default;

    virtual QWidget& widget() = 0;
    /// Shows what has changed. Called only while the page is in sight, or is coming into sight.
    /// @param changes  what is no longer as it was at the last call; empty where only a panel may
    ///                 have something else to say.
    virtual void refresh(const JobChanges& changes) = 0;
    /// What keeps the job from being printed as it is typed here.
    virtual PageProblem problem() const { return {}; }

    /// Called whenever problem() may say something else; at most one listener.
    void onProblemChanged(std::function<void()> listener) {
        mOnProblemChanged = std::move(listener);
    }

protected:
    void problemChanged() const {
        if (mOnProblemChanged)
            mOnProblemChanged();
    }

private:
    std::function<void()> mOnProblemChanged;
};

} // namespace labelcut
