// Panels: the panels that all loaded plug-ins offer for one host.
#include "host/panels/panel_host.h"

#include <exception>

#include "host/panels/guarded_panel.h"
#include "host/panels/resource_bundle.h"
#include "host/texts/host_text.h"

namespace labelcut {

PanelSet::PanelSet(PanelHost& host, const std::vector<LoadedPlugin>& plugins,
                   const PDESystem& system)
    : mHost(host) {
    for (const LoadedPlugin& plugin : plugins) {
        // Nothing may throw across the boundary; what does all the same costs only its own panels.
        try {
            addPlugin(plugin, system);
        } catch (const std::exception& error) {
            mRefused.push_back({plugin.file, QString::fromUtf8(error.what())});
        } catch (...) {
            mRefused.push_back({plugin.file, hostText("PluginThrewAtPanels")});
        }
    }
}

void PanelSet::addPlugin(const LoadedPlugin& plugin, const PDESystem& system) {
    std::shared_ptr<PDEPlugin> principal = plugin.factory->create(system);
    auto bundle = std::make_shared<ResourceBundle>(plugin.bundleRoot);
    if (!principal || !principal->initWithBundle(bundle)) {
        mRefused.push_back({plugin.file, hostText("PluginDoesNotServe")});
        return;
    }
    auto callback = mHost.makeCallback();
    PDEPanelArray* panels =
        principal->PDEPanelsForType(QLatin1String(kPDEPrinterModuleType), callback);
    if (!panels) {
        mRefused.push_back({plugin.file, hostText("PluginMadeNoPanels")});
        return;
    }
    // Panels count once all of a plug-in's have answered; one that throws takes the others with it.
    std::vector<Entry> entries;
    try {
        for (const std::unique_ptr<PDEPanel>& panel : *panels) {
            if (!panel)
                continue;
            auto guarded = std::make_shared<GuardedPanel>(
                *panel, plugin.file,
                [&host = mHost](const QString& s) { host.tellTroubleOnce(s); });
            mHost.addPanel(callback, guarded.get());
            entries.push_back({callback, bundle, principal, guarded.get(), {}, guarded});
            // One that fails at this first question is not taken at all.
            entries.back().keys = panel->supportedPPDOptionKeys().value_or(QStringList());
        }
    } catch (...) {
        for (const Entry& entry : entries)
            mHost.removePanel(entry.panel);
        throw;
    }
    mEntries.insert(mEntries.end(), entries.begin(), entries.end());
}

PanelSet::~PanelSet() {
    for (const Entry& entry : mEntries)
        mHost.removePanel(entry.panel);
}

QStringList PanelSet::keywords() const {
    QStringList all;
    for (const Entry& entry : mEntries) {
        for (const QString& key : entry.keys) {
            if (!all.contains(key) && ppd::findOption(mHost.ppd(), key.toUtf8().constData()))
                all.append(key);
        }
    }
    return all;
}

void PanelSet::save() {
    for (const Entry& entry : mEntries)
        entry.panel->saveValuesAndReturnError(nullptr);
}

void PanelSet::restore() {
    for (const Entry& entry : mEntries)
        entry.panel->restoreValuesAndReturnError(nullptr);
}

bool PanelSet::shouldPrint() {
    bool print = true;
    for (const Entry& entry : mEntries)
        print = entry.panel->shouldPrint() && print;
    return print;
}

} // namespace labelcut
