// The dialog: its pages, one behind the other, for the printer that is open.
#pragma once

#include <QWidget>

#include <functional>
#include <set>
#include <vector>

#include "host/dialog/job_snapshot.h"
#include "host/dialog/page.h"
#include "host/dialog/wheel_guard.h"

class QLabel;
class QTabWidget;

namespace labelcut {

struct PageRow;

/// What every job needs stands beside the tabs: which labels, and their size. In the tabs come the
/// panels' pages first, then the dialog's own. A page of the dialog's own is made when it is
/// first looked at, so that the window is there sooner. Only what is in sight is kept up to date;
/// any other page catches up when it comes into sight.
class PageStack : public QWidget {
    Q_OBJECT
public:
    /// @param model  borrowed, outlives the pages; see clear().
    explicit PageStack(JobModel& model, QWidget* parent = nullptr);

    QTabWidget& tabs() const { return *mTabs; }
    /// What stands beside the tabs; belongs to whoever lays it out. Empty without a printer.
    QWidget& beside() const { return *mBeside; }
    /// Pages for the printer that the model has, in place of those before.
    void rebuild();
    /// Takes all pages away, which gives the panels their views back: before the panels go.
    void clear();
    /// Shows the model's state on the page in sight, which is made if it is not there yet.
    /// @param now  that state.
    void refresh(const JobSnapshot& now);
    /// What is typed on any page and cannot be taken; a sentence, empty when there is nothing. Its
    /// page comes to the front, with the focus in the field.
    QString showProblem();
    /// The same, without showing it.
    PageProblem problem() const;

    /// With room for a message that may come below.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// What problem() says may be something else now.
    void problemChanged();

private:
    struct Slot {
        /// What stands behind the tab; the page is in it.
        QWidget* tab;
        /// What makes the page; null once it is made.
        Page* (*make)(JobModel&);
        /// Null until it is made.
        Page* page;
        /// What the page shows.
        JobSnapshot shown;
    };
    void addPanel(const PanelSet::Entry& panel);
    void addRow(const PageRow& row);
    void addBeside();
    void bringUpToDate(Slot& slot, const JobSnapshot& now);

    JobModel& mModel;
    QTabWidget* mTabs;
    QWidget* mBeside;
    QLabel* mNoPrinter;
    std::vector<Slot> mSlots;
    /// Kinds of the panels that the user has folded away, for as long as the window is there.
    std::set<QString> mFolded;
    WheelGuard mWheel;
};

} // namespace labelcut
