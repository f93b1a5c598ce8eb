// Performance: a window with the cut-options panel on a real host, without the rest of the dialog.
#pragma once

#include <QCheckBox>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>
#include <vector>

#include "host/panels/panel_host.h"

namespace labelcut::bench {

/// The plug-in's panel in a window, each step of its life a call of its own.
class PanelWindow {
public:
    PanelWindow();
    ~PanelWindow();
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;

    /// Opens the PPD and marks its defaults.
    void openPpd(const QString& path);
    /// Finds and loads the plug-in, creates its panel, which reports its keywords.
    void createPanel();
    /// Shows the window with a label only, and lets it be painted.
    void showEmpty();
    /// Loads the panel's view, has it lay itself out and reread the marks, puts it into the window.
    void loadView();
    /// Lets everything that is waiting happen, painting included.
    static void settle();

    /// Settings the last of the PPD's counts as another program would, and has the panel reread it.
    /// @return false when the printer has no counts.
    bool chooseLastCount();

    PanelSet& panels() { return *mPanels; }
    QWidget& view() { return *mView; }
    /// The checkboxes that a user could click.
    std::vector<QCheckBox*> checkBoxes() const;

private:
    HostSystem mSystem;
    ppd::File mPpd;
    PluginSearch mPlugins;
    std::unique_ptr<PanelHost> mHost;
    std::unique_ptr<PanelSet> mPanels;
    QWidget mWindow;
    QVBoxLayout* mLayout;
    QWidget* mView = nullptr;
};

} // namespace labelcut::bench
