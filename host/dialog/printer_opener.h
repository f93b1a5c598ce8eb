// The dialog: opens printers, and remembers what was chosen for each while the window is there.
#pragma once

#include <QObject>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/dialog/job_model.h"
#include "host/printers/printer_directory.h"
#include "host/printers/printer_source.h"

namespace labelcut {

/// Gives the model its printer: a queue, whose PPD is fetched, or a PPD file; both beside the
/// window. The printer before it stays in force until the new one can be opened, and whenever it
/// cannot.
class PrinterOpener : public QObject {
    Q_OBJECT
public:
    /// @param model    borrowed, outlives this.
    /// @param plugins  and system: borrowed, outlive the model.
    PrinterOpener(JobModel& model, const PluginSearch& plugins, const PDESystem& system,
                  CupsConnection service, QObject* parent = nullptr);

    PrinterDirectory& directory() { return mDirectory; }

    /// Opens the first printer: the one that is named, or, once the queues are known, the one used
    /// last or the service's default. When the one that is named cannot be opened, none is.
    /// @param printer  nothing: none is named.
    /// @param wanted   choices beyond the defaults.
    void start(const std::optional<PrinterRef>& printer, const Settings& wanted);
    /// Opens a printer with the choices that were made for it last in this window. What it opens
    /// with otherwise: the PPD's defaults, and for a queue the options that the user has saved.
    void open(const PrinterRef& printer);
    /// No longer opens what is on its way.
    void stay();
    /// The printer whose PPD is on its way, a file by the path that was asked for; nothing while
    /// there is none.
    const std::optional<PrinterRef>& coming() const { return mComing; }
    /// The printer in force; nothing before there is one.
    std::optional<PrinterRef> inForce() const;

Q_SIGNALS:
    /// A PPD is on its way, or no longer is.
    void comingChanged();
    /// The panels of the printer in force go: their views must be given back.
    void aboutToOpen();
    /// @param title  for people.
    void opened(const labelcut::PrinterRef& printer, const QString& title);
    /// It cannot be opened; the printer in force stays so.
    void failed(const labelcut::PrinterRef& printer, const QString& sentence);

private:
    void queuesChanged(const std::vector<Queue>& queues);
    void openFirst(const std::vector<Queue>& queues);
    void printerFound(const std::shared_ptr<FoundPrinter>& printer);
    void giveUp(const PrinterRef& printer, const QString& sentence);
    void adopt(FoundPrinter printer);
    Settings* chosenFor(const PrinterRef& printer);
    void keepChoices();

    JobModel& mModel;
    const PluginSearch& mPlugins;
    const PDESystem& mSystem;
    PrinterDirectory mDirectory;
    /// What was chosen for each printer that was in force before.
    std::vector<std::pair<PrinterRef, Settings>> mChosen;
    /// For the first printer, until it is open.
    Settings mWanted;
    /// The queue to begin with; empty: the service's default. Nothing once the user decides.
    std::optional<QString> mFirst;
    std::optional<PrinterRef> mComing;
};

} // namespace labelcut
