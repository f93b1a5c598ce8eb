// The dialog: the page that holds one plug-in's panel.
#pragma once

#include <QScrollArea>

#include <set>

#include "host/dialog/page.h"

class QHBoxLayout;
class QLabel;
class QToolButton;

namespace labelcut {

class Alert;

/// Shows the panel's view whole, scrolling when the window is smaller, and tells the model when the
/// user has acted in it. Above it, where the panel wants that, stand a button that folds the view
/// away and one that opens the panel's help; below it stands what the panel remarks. The view stays
/// the panel's: it is taken out before the page goes.
class PanelPage : public QWidget, public Page {
    Q_OBJECT
public:
    /// @param panel   borrowed, outlives the page.
    /// @param folded  kinds of the panels that are folded away; borrowed, outlives the page, and is
    ///                kept up to date.
    PanelPage(JobModel& model, const PanelSet::Entry& panel, std::set<QString>& folded,
              QWidget* parent = nullptr);
    ~PanelPage() override;

    QWidget& widget() override { return *this; }
    void refresh(const JobChanges& changes) override;
    /// Whether the panel has given a view; else a line stands in its place.
    bool hasView() const { return mHasView; }

private:
    void addFoldButton(QHBoxLayout& row);
    void addHelpButton(QHBoxLayout& row);
    void fold(bool folded);
    void showHelp();
    void showRemark();
    void followUser(QWidget& view, const PDEPluginCallback& callback);

    JobModel& mModel;
    PDEPanel& mPanel;
    std::set<QString>& mFolded;
    QScrollArea* mArea;
    bool mHasView = false;
    /// Null for a panel that stays unfolded.
    QToolButton* mFold = nullptr;
    Alert* mRemark;
    QLabel* mRemarkText;
};

} // namespace labelcut
