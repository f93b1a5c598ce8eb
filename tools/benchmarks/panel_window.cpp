// Performance: a window with the cut-options panel on a real host, without the rest of the dialog.
#include "tools/benchmarks/panel_window.h"

#include <QCoreApplication>
#include <QLabel>

namespace labelcut::bench {

PanelWindow::PanelWindow()
    : mLayout(new QVBoxLayout(&mWindow)) {
    mLayout->addWidget(new QLabel(QStringLiteral("A window with a label")));
}

PanelWindow::~PanelWindow() {
    if (mView)
        mView->setParent(nullptr);
}

void PanelWindow::openPpd(const QString& path) {
    mPpd = ppd::openFile(path, nullptr);
    if (!mPpd)
        qFatal("no PPD");
    ppd::markDefaults(mPpd.get());
}

void PanelWindow::createPanel() {
    mPlugins = loadPlugins(QStringLiteral(LABELCUT_BENCH_PLUGINS));
    PanelHostSetup setup;
    setup.ppd = std::move(mPpd);
    setup.paper = HostPaper::fromMarkedPageSize(setup.ppd.get());
    mHost = std::make_unique<PanelHost>(std::move(setup));
    mPanels = std::make_unique<PanelSet>(*mHost, mPlugins.loaded, mSystem);
    if (mPanels->keywords().isEmpty())
        qFatal("no panel");
}

void PanelWindow::showEmpty() {
    mWindow.resize(600, 500);
    mWindow.show();
    settle();
}

void PanelWindow::loadView() {
    PDEPanel& panel = *mPanels->entries().front().panel;
    mView = panel.panelView();
    if (!mView)
        qFatal("no view");
    panel.willShow();
    panel.restoreValuesAndReturnError(nullptr);
    mLayout->addWidget(mView);
    mView->show();
}

void PanelWindow::settle() {
    for (int i = 0; i < 4; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

bool PanelWindow::chooseLastCount() {
    const ppd_option_t* counts = ppd::findOption(mHost->ppd(), "KvCutLabel");
    if (!counts)
        return false;
    const QString last = QString::fromUtf8(counts->choices[counts->num_choices - 1].choice);
    mHost->changeFromOutside(QStringLiteral("KvCutLabel"), last);
    mPanels->restore();
    return true;
}

std::vector<QCheckBox*> PanelWindow::checkBoxes() const {
    std::vector<QCheckBox*> usable;
    for (QCheckBox* box : mView->findChildren<QCheckBox*>()) {
        if (box->isVisible() && box->isEnabled())
            usable.push_back(box);
    }
    return usable;
}

} // namespace labelcut::bench
