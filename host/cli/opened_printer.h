// The command line: a printer, opened for a command's life.
#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <vector>

#include "host/cli/printer_arguments.h"
#include "host/panels/panel_host.h"
#include "host/service/cups_connection.h"

namespace labelcut {

/// Opens a PPD that the user names, with its defaults marked. @return the failure is a sentence.
Result<ppd::File> openPpdFile(const QString& path);

/// A queue or PPD with the panels that all plug-ins offer for it; no panel has a view.
class OpenedPrinter {
public:
    /// Fetches the queue's PPD or reads the file, marks its defaults and, over them, the options
    /// that the user has saved for the queue (lpoptions), and creates the panels. An application
    /// object must exist. @return the failure is a sentence for the user.
    static Result<std::unique_ptr<OpenedPrinter>> open(const PrinterArguments& arguments);

    ppd_file_t* ppd() const { return mHost->ppd(); }
    PanelHost& host() { return *mHost; }
    PanelSet& panels() { return *mPanels; }
    /// The printer for people: the queue's name, or what its PPD calls itself.
    const QString& title() const { return mTitle; }
    /// Nothing for a PPD without a queue.
    const std::optional<Queue>& queue() const { return mQueue; }
    const CupsConnection& service() const { return mService; }
    /// What the user has saved for the queue, as far as the printer has it.
    const Settings& savedChoices() const { return mSavedChoices; }
    /// What was left out while opening, in sentences: saved options, plug-ins that cannot be used.
    const QStringList& notes() const { return mNotes; }

    /// Marks what the user asked for and tells the panels, then has them take it over and write
    /// their state. Where a panel wrote something else for one of `asked`, the user's word stands.
    /// @param asked  settings as checkedSetting() gives them.
    void apply(const Settings& asked);

private:
    OpenedPrinter() = default;
    void markSavedChoices(ppd_file_t* ppd);
    void createPanels(PanelHostSetup setup);
    void follow(const Setting& setting);

    CupsConnection mService;
    std::optional<Queue> mQueue;
    QString mTitle;
    Settings mSavedChoices;
    QStringList mNotes;
    PluginSearch mPlugins;
    HostSystem mSystem;
    std::unique_ptr<PanelHost> mHost;
    std::unique_ptr<PanelSet> mPanels;
};

} // namespace labelcut
