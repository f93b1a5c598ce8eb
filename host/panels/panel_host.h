// Panels: one printer's PPD, print objects and panels, as a dialog, command or script
// plays them.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/panels/host_objects.h"
#include "host/panels/plugin_loader.h"
#include "host/settings/ppd_calls.h"
#include "host/settings/setting.h"
#include "platform/dialog/pde_plugin.h"

namespace labelcut {

/// What a host has at hand when it opens panels. Anything may be missing.
struct PanelHostSetup {
    ppd::File ppd;
    std::optional<QString> deviceURI;
    std::optional<HostPaper> paper;
    /// False: the host answers the panels that it has no print settings.
    bool offersSettings = true;
};

/// Plays the dialog towards panels: answers their callback, marks what they choose, tells the other
/// panels. It owns PPD and print objects; panels must be gone before it.
class PanelHost {
public:
    explicit PanelHost(PanelHostSetup setup);
    ~PanelHost();
    PanelHost(const PanelHost&) = delete;
    PanelHost& operator=(const PanelHost&) = delete;

    /// A callback for one plug-in's panels. Each panel that listens is told of changes that came
    /// through any other callback.
    std::shared_ptr<PDEPluginCallback> makeCallback();
    /// From now on `panel`, created with `callback`, hears of others' changes. Borrowed.
    void addPanel(const std::shared_ptr<PDEPluginCallback>& callback, PDEPanel* panel);
    void removePanel(PDEPanel* panel);

    /// Marks, and keeps the pair among the print settings, without telling any panel.
    /// @return false, and nothing done, when the PPD lacks the pair, or there is no PPD.
    bool mark(const QString& key, const QString& choice);
    /// Takes both back. @return false when the PPD lacks the option.
    bool unmark(const QString& key);
    /// The same, then every panel is told (a change from outside all panels).
    bool changeFromOutside(const QString& key, const QString& choice);
    /// The marked choice; nothing when none is or the PPD lacks the option. A custom choice comes
    /// back as "Custom.value" where libcups holds one.
    std::optional<QString> marked(const QString& key) const;

    /// What panels sent through willChangePPDOptionKeyValue since the last call, in order. Beyond
    /// kMostChanges that nobody has taken, the counting begins anew.
    Settings takeChanges();
    static constexpr std::size_t kMostChanges = 10'000;
    /// How often panelViewDidResize arrived since the last call.
    int takeResizes();
    /// Called after a panel wrote a choice that the PPD has, changed or not; at most one listener.
    /// @param writer  the callback that it came through.
    using ChangeListener =
        std::function<void(const PDEPluginCallback& writer, const Setting& setting)>;
    void onChange(ChangeListener listener);
    /// Called when a panel's view has a new size.
    void onResize(std::function<void()> listener);
    /// Called with a sentence for the user when a panel does not keep the rules. Until there is a
    /// listener, sentences go to the log.
    void onTrouble(std::function<void(const QString& sentence)> listener);
    void tellTrouble(const QString& sentence);
    /// The same, unless it has been told so before: for what may fail at every click.
    void tellTroubleOnce(const QString& sentence);
    /// A panel may answer a change with another. After so many notices that came of one change,
    /// panels are told no more of its answers: two that never agree would not end otherwise.
    static constexpr int kMostNotices = 64;

    ppd_file_t* ppd() const { return mPpd.get(); }
    HostPrinter& printer() { return mPrinter; }
    HostPrintSettings& settings() { return mSettings; }
    HostPrintSession& session() { return mSession; }
    HostPageFormat& pageFormat() { return mPageFormat; }

private:
    class Callback;
    struct Listener {
        const PDEPluginCallback* callback;
        PDEPanel* panel;
    };
    void panelChose(const PDEPluginCallback& writer, const QString& key, const QString& choice);
    void keepForJob(const QString& key, const QString& choice);
    void notify(const PDEPluginCallback* except, const QString& key, const QString& choice);

    ppd::File mPpd;
    HostPrinter mPrinter;
    HostPrintSession mSession;
    HostPrintSettings mSettings;
    HostPageFormat mPageFormat;
    bool mOffersSettings;
    std::vector<Listener> mListeners;
    Settings mChanges;
    int mResizes = 0;
    /// Of the change that panels are being told of, and its answers.
    int mNotices = 0;
    /// Keyword of the notice that was suppressed at the limit; empty if none.
    QString mDisputed;
    ChangeListener mOnChange;
    std::function<void()> mOnResize;
    std::function<void(const QString&)> mOnTrouble;
    QStringList mToldOnce;
};

/// The panels that all loaded plug-ins offer for one host, driven through their common life.
class PanelSet {
public:
    struct Entry {
        /// Shared by the panels of one plug-in.
        std::shared_ptr<PDEPluginCallback> callback;
        std::shared_ptr<const PDEBundle> bundle;
        std::shared_ptr<PDEPlugin> plugin;
        /// What it throws goes no further; see GuardedPanel.
        PDEPanel* panel = nullptr;
        QStringList keys;
        std::shared_ptr<PDEPanel> guard;
    };

    /// Creates every plug-in's panels of the printer-module type and asks their keywords (which
    /// writes the current choices to the host). A plug-in that refuses or throws is left out and
    /// listed in refused().
    PanelSet(PanelHost& host, const std::vector<LoadedPlugin>& plugins, const PDESystem& system);
    ~PanelSet();
    PanelSet(const PanelSet&) = delete;
    PanelSet& operator=(const PanelSet&) = delete;

    const std::vector<Entry>& entries() const { return mEntries; }
    const std::vector<RefusedPlugin>& refused() const { return mRefused; }
    /// All keywords that panels claim, in order, each once, that the PPD has as options.
    QStringList keywords() const;
    /// Asks every panel to write its state.
    void save();
    /// Asks every panel to reread the marks.
    void restore();
    /// Whether every panel lets the job be printed.
    bool shouldPrint();

private:
    void addPlugin(const LoadedPlugin& plugin, const PDESystem& system);

    PanelHost& mHost;
    std::vector<Entry> mEntries;
    std::vector<RefusedPlugin> mRefused;
};

/// The version of the extension interface that this host offers: 11.0.0.
class HostSystem : public PDESystem {
public:
    struct Version {
        int major = 11;
        int minor = 0;
        int bugFix = 0;
    };
    HostSystem() = default;
    explicit HostSystem(Version version)
        : mVersion(version) {}
    OSStatus gestalt(std::uint32_t selector, std::int32_t* value) const override;

private:
    Version mVersion;
};

} // namespace labelcut
