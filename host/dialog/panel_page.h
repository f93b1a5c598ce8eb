// The dialog: the page that holds one plug-in's panel.
#pragma once

#include <QScrollArea>

#include "host/dialog/job_model.h"

namespace labelcut {

/// Shows the panel's view whole, scrolling when the window is smaller, and tells the model when the
/// user has acted in it. The view stays the panel's: it is taken out before the page goes.
class PanelPage : public QScrollArea {
    Q_OBJECT
public:
    PanelPage(JobModel& model, const PanelSet::Entry& panel, QWidget* parent = nullptr);
    ~PanelPage() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void followUser(QWidget& view, const PDEPluginCallback& callback);

    JobModel& mModel;
    /// Whether what is shown is the panel's, and not a line in its place.
    bool mHasPanelView = false;
};

} // namespace labelcut
